#include "media/file_copy.h"

#include <vector>

#include "core/error.h"
#include "media/media_services.h"

namespace omniset {

namespace {

constexpr std::size_t kPiece = 256 * 1024;

DevicePtr required(DevicePtr file) {
  if (!file) throw Failure("Cannot copy package");
  return file;
}

}  // namespace

std::size_t readFully(Device& device, std::span<std::uint8_t> into) {
  std::size_t filled = 0;
  while (filled < into.size()) {
    const std::size_t count = readDevice(device, into.subspan(filled));
    if (count == 0) break;
    filled += count;
  }
  return filled;
}

void copyFile(Volumes& volumes, const std::string& source, const std::string& target,
              Event& stopEvent) {
  const DevicePtr from = required(volumes.openFile(source));
  const DevicePtr to = required(volumes.createFile(target, Volumes::Creation::kOverwrite));
  std::vector<std::uint8_t> piece(kPiece);
  while (true) {
    requireNoStop(stopEvent);
    const auto count = from->read(piece);
    if (!count) throw Failure("Cannot copy package");
    if (*count == 0) break;
    if (to->write(std::span(piece).first(*count)) != *count) throw Failure("Cannot copy package");
  }
  if (!to->close() || !from->close()) throw Failure("Cannot copy package");
}

}  // namespace omniset
