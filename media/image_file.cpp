#include "media/image_file.h"

#include "core/error.h"

namespace omniset {

void writeNewFile(Volumes& volumes, const std::string& path, std::span<const std::uint8_t> bytes) {
  const DevicePtr file = volumes.createFile(path, Volumes::Creation::kNew);
  if (!file) throw Failure("Cannot create file");
  writeDevice(*file, bytes);
  closeDevice(*file);
}

std::span<const std::uint8_t> writeImageFile(const MediaServices& services, const std::string& path,
                                             int number) {
  const auto bytes = services.loadImage(number).bytes();
  writeNewFile(*services.volumes, path, bytes);
  return bytes;
}

std::uint64_t fileSize(Volumes& volumes, const std::string& path) {
  const DevicePtr file = volumes.openWithoutAccess(path);
  if (!file) throw Failure("Cannot open file");
  const auto size = file->size();
  if (!size) throw Failure("Cannot get file size");
  closeDevice(*file);
  return *size;
}

}  // namespace omniset
