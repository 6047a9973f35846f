// A volume, a disk or a file that is open, and the calls that the local media jobs make to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace omniset {

// Each operation is one call of the system and tells whether it succeeded; nothing is raised. Used
// by one thread. The destructor closes what is still open, without a word when that fails.
class Device {
 public:
  virtual ~Device() = default;
  // The number of bytes read: 0 at the end of a file. Nothing when it failed.
  virtual std::optional<std::size_t> read(std::span<std::uint8_t> into) = 0;
  virtual std::optional<std::size_t> write(std::span<const std::uint8_t> from) = 0;
  // From the start, in bytes.
  virtual bool seek(std::uint64_t offset) = 0;
  // Device I/O control by the code's number; the answer's length, or nothing.
  virtual std::optional<std::size_t> control(std::uint32_t code, std::span<const std::uint8_t> in,
                                             std::span<std::uint8_t> out) = 0;
  // In bytes.
  virtual std::optional<std::uint64_t> size() = 0;
  // Not open any more afterwards, whatever it returns. To be called once at most.
  virtual bool close() = 0;
};

using DevicePtr = std::unique_ptr<Device>;

// These raise Failure when the call failed: "Read from device failed", "Write to device failed",
// "Seeking device failed", "I/O Operation failed", "Closing device failed". A device that takes
// fewer bytes than it was given has failed, too.
std::size_t readDevice(Device& device, std::span<std::uint8_t> into);
void writeDevice(Device& device, std::span<const std::uint8_t> from);
void seekDevice(Device& device, std::uint64_t offset);
std::size_t deviceControl(Device& device, std::uint32_t code, std::span<const std::uint8_t> in,
                          std::span<std::uint8_t> out);
void closeDevice(Device& device);

// Reads until all is filled; Failure "Read from device failed" when the device ends before.
void readWhole(Device& device, std::span<std::uint8_t> into);

}  // namespace omniset
