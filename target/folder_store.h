// A target's store in a folder of this computer, for trying an installation without a PC.
#pragma once

#include <filesystem>
#include <string>

#include "core/file.h"
#include "target/target_store.h"

namespace omniset {

// Raises Failure with a sentence. Prepares a folder by deleting the files of the installation
// before, and only in a folder that it claimed: one that it made or found empty, where it leaves a
// mark.
class FolderStore : public TargetStore {
 public:
  explicit FolderStore(std::filesystem::path folder) : folder_(std::move(folder)) {}
  ~FolderStore() override { abandon(); }

  std::string path() const { return folder_.string(); }

  // Makes the folder, or takes it over when it is empty.
  void claim();

  void beginPreparation(bool keepConfiguration) override;
  bool isPrepared() override { return true; }
  void openFile(const std::string& name, std::int32_t size) override;
  void write(std::span<const std::uint8_t> bytes) override;
  void closeFile() override;
  // A folder that stands for a disk counts as it is.
  void finish() override {}
  void abandon() override;

 private:
  // Where a file is until it is complete.
  std::filesystem::path partPath() const;
  void removePart();

  std::filesystem::path folder_;
  std::string name_;
  FilePtr file_;
};

}  // namespace omniset
