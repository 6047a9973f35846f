#include "media/device.h"

#include "core/error.h"

namespace omniset {

std::size_t readDevice(Device& device, std::span<std::uint8_t> into) {
  const auto count = device.read(into);
  if (!count) throw Failure("Read from device failed");
  return *count;
}

void writeDevice(Device& device, std::span<const std::uint8_t> from) {
  if (device.write(from) != from.size()) throw Failure("Write to device failed");
}

void seekDevice(Device& device, std::uint64_t offset) {
  if (!device.seek(offset)) throw Failure("Seeking device failed");
}

std::size_t deviceControl(Device& device, std::uint32_t code, std::span<const std::uint8_t> in,
                          std::span<std::uint8_t> out) {
  const auto length = device.control(code, in, out);
  if (!length) throw Failure("I/O Operation failed");
  return *length;
}

void closeDevice(Device& device) {
  if (!device.close()) throw Failure("Closing device failed");
}

void readWhole(Device& device, std::span<std::uint8_t> into) {
  while (!into.empty()) {
    const std::size_t count = readDevice(device, into);
    if (count == 0) throw Failure("Read from device failed");
    into = into.subspan(count);
  }
}

}  // namespace omniset
