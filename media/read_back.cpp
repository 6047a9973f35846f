#include "media/read_back.h"

#include <algorithm>
#include <functional>

#include "core/error.h"
#include "media/file_copy.h"
#include "media/media_services.h"

namespace omniset {

namespace {

constexpr std::size_t kPiece = 256 * 1024;
constexpr const char* kBootSectorName = "The boot sector";

// Fills as much as the original still has.
using ReadOriginal = std::function<std::size_t(std::span<std::uint8_t>)>;

ReadOriginal readerOf(std::span<const std::uint8_t> bytes) {
  return [bytes](std::span<std::uint8_t> into) mutable {
    const std::size_t count = std::min(into.size(), bytes.size());
    std::copy_n(bytes.begin(), count, into.begin());
    bytes = bytes.subspan(count);
    return count;
  };
}

std::size_t readWritten(const std::string& path, Device& device, std::span<std::uint8_t> into) {
  try {
    return readFully(device, into);
  } catch (const Failure&) {
    throw Failure(path + " cannot be read back");
  }
}

[[noreturn]] void differs(const std::string& path) {
  throw Failure(path + " differs from what was written");
}

void compare(const std::string& path, Device& written, const ReadOriginal& readOriginal,
             Event& stopEvent) {
  std::vector<std::uint8_t> original(kPiece);
  std::vector<std::uint8_t> copy(kPiece);
  std::size_t count = 0;
  do {
    requireNoStop(stopEvent);
    count = readOriginal(original);
    const std::size_t there = readWritten(path, written, copy);
    if (there != count || !std::equal(original.begin(), original.begin() + count, copy.begin())) {
      differs(path);
    }
  } while (count == kPiece);
}

}  // namespace

void ReadBack::expectBytes(const std::string& path, std::span<const std::uint8_t> bytes) {
  files_.push_back({path, bytes, {}, {}});
}

void ReadBack::expectText(const std::string& path, std::string text) {
  files_.push_back({path, {}, std::move(text), {}});
}

void ReadBack::expectCopy(const std::string& path, const std::string& source) {
  files_.push_back({path, {}, {}, source});
}

void ReadBack::check(Volumes& volumes, char letter, Event& stopEvent) {
  if (!volumes.flushVolume(letter)) throw Failure("Write to device failed");
  for (const Expected& file : files_) checkFile(volumes, file, stopEvent);
  if (bootSector_) checkBootSector(volumes, letter);
}

void ReadBack::checkFile(Volumes& volumes, const Expected& expected, Event& stopEvent) {
  const DevicePtr written = volumes.openWritten(expected.path);
  if (!written) throw Failure(expected.path + " cannot be read back");
  if (!expected.source.empty()) {
    const DevicePtr source = volumes.openFile(expected.source);
    if (!source) throw Failure("Cannot open file");
    compare(
        expected.path, *written,
        [&](std::span<std::uint8_t> into) { return readFully(*source, into); }, stopEvent);
    closeDevice(*source);
  } else if (!expected.text.empty()) {
    const auto* text = reinterpret_cast<const std::uint8_t*>(expected.text.data());
    compare(expected.path, *written, readerOf({text, expected.text.size()}), stopEvent);
  } else {
    compare(expected.path, *written, readerOf(expected.bytes), stopEvent);
  }
  closeDevice(*written);
}

void ReadBack::checkBootSector(Volumes& volumes, char letter) {
  const DevicePtr volume = volumes.openVolume(letter);
  if (!volume) throw Failure("Cannot open device");
  DriveSector sector{};
  if (readWritten(kBootSectorName, *volume, sector) != sector.size() || sector != *bootSector_) {
    differs(kBootSectorName);
  }
  closeDevice(*volume);
}

}  // namespace omniset
