// Temporary files.
#pragma once

#include <string>

namespace omniset {

class TempFiles {
 public:
  virtual ~TempFiles() = default;
  // Creates a new, empty file with a unique name that begins with `prefix` (three letters) in the
  // folder for temporary files and returns its path; the caller deletes it.
  // Raises Error "GetTempPath" and "GetTempFileName".
  virtual std::string create(const char* prefix) = 0;
};

// The system's temporary files.
class SystemTempFiles : public TempFiles {
 public:
  std::string create(const char* prefix) override;
};

}  // namespace omniset
