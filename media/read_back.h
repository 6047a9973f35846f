// Reads back what was written to a drive and compares it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/sync.h"
#include "media/volumes.h"

namespace omniset {

// Remembers what was written, in order. Used by one thread.
class ReadBack {
 public:
  // The bytes outlive the check.
  void expectBytes(const std::string& path, std::span<const std::uint8_t> bytes);
  void expectText(const std::string& path, std::string text);
  void expectCopy(const std::string& path, const std::string& source);
  // The first sector of the volume.
  void expectBootSector(const DriveSector& sector) { bootSector_ = sector; }

  // Flushes the drive, forgets what the system remembers of it, and reads everything. Raises
  // Failure: "E:\linux differs from what was written", "E:\linux cannot be read back" (the boot
  // sector is named "The boot sector"), "Write to device failed" when the drive cannot be flushed,
  // "Cannot open file" for the original of a copy, and "Canceled".
  void check(Volumes& volumes, char letter, Event& stopEvent);

 private:
  struct Expected {
    std::string path;
    std::span<const std::uint8_t> bytes;
    std::string text;
    std::string source;  // of a copy, which is read again
  };

  void checkFile(Volumes& volumes, const Expected& expected, Event& stopEvent);
  void checkBootSector(Volumes& volumes, char letter);

  std::vector<Expected> files_;
  std::optional<DriveSector> bootSector_;
};

}  // namespace omniset
