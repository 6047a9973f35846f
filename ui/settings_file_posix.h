// The file behind a store of settings. Operations return 0 or the system's error code.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "ui/stored_values.h"

namespace omniset {

class SettingsFile {
 public:
  // `patience` is how long a change waits for other programs' changes.
  SettingsFile(std::string path, std::chrono::milliseconds patience)
      : path_(std::move(path)), patience_(patience) {}

  // A file that is missing, damaged or must not be read is like an empty one.
  int read(StoredKeys& keys) const;
  // Reads, changes and replaces the file, while nobody else does; first creates its folder, and
  // puts a file that cannot be used aside. What `action` returns, if it is not 0, ends the change.
  int change(const std::function<int(StoredKeys&)>& action) const;

 private:
  struct Loaded {
    int error = 0;
    bool isUsable = true;
    StoredKeys keys;
  };

  Loaded load() const;
  int putAside() const;
  int replace(const StoredKeys& keys) const;

  std::string path_;
  std::chrono::milliseconds patience_;
};

}  // namespace omniset
