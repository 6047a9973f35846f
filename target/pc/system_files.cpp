#include "target/pc/system_files.h"

#include <array>
#include <cerrno>
#include <cstring>

#include "core/error.h"
#include "core/file.h"

namespace omniset {

std::string readSystemFile(const char* path) {
  std::string content;
  const FilePtr file = openFile(path, "rb");
  if (!file) return content;
  std::array<char, 1024> block;
  while (const std::size_t length = std::fread(block.data(), 1, block.size(), file.get())) {
    content.append(block.data(), length);
  }
  return content;
}

void failWithReason(const std::string& sentence) {
  throw Failure(sentence + " (" + std::strerror(errno) + ").");
}

}  // namespace omniset
