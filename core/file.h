// An open file of the C library that closes itself.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace omniset {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

// Null, with the system's last error, when it cannot be opened; `mode` is fopen's.
inline FilePtr openFile(const std::string& path, const char* mode) {
  return FilePtr(std::fopen(path.c_str(), mode));
}

}  // namespace omniset
