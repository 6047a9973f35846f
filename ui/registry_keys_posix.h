// A store of settings in one file. Each change replaces the file as a whole, so a reader never sees
// half of one; programs that change it at the same time take turns by a lock file beside it. A file
// that is damaged or must not be read counts as empty, and is renamed before the next change.
#pragma once

#include <chrono>

#include "ui/registry_keys.h"

namespace omniset {

class FileRegistry : public RegistryRoot {
 public:
  // The file, and how long a change waits for its turn.
  explicit FileRegistry(std::string path,
                        std::chrono::milliseconds patience = std::chrono::seconds(5))
      : path_(std::move(path)), patience_(patience) {}

  std::unique_ptr<RegistryKey> open(const std::string& path) override;

 private:
  std::string path_;
  std::chrono::milliseconds patience_;
};

// The present user's file, empty when the environment names no home.
std::string userSettingsPath();

}  // namespace omniset
