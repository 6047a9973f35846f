// A folder of its own that goes away with its contents, and temporary files within it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/temp_file.h"

namespace omniset::test {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string path() const { return path_.string(); }
  // Writes a file into the folder and returns its path.
  std::string write(const std::string& name, std::string_view content) const;
  // The names in the folder, sorted.
  std::vector<std::string> names() const;

 private:
  std::filesystem::path path_;
};

// The whole content of a file; fails the test when it cannot be read.
std::string readFile(const std::string& path);

// Creates the temporary files in a folder of the test.
class FakeTempFiles : public TempFiles {
 public:
  explicit FakeTempFiles(const TempFolder& folder) : folder_(folder) {}
  // Raises Error "GetTempPath" when it is to fail.
  std::string create(const char* prefix) override;

  bool failing = false;

 private:
  const TempFolder& folder_;
  int last_ = 0;
};

}  // namespace omniset::test
