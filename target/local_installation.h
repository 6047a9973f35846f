// Installs the very disk that the PC was started from, with the packages and the script that were
// put on it elsewhere: they are read into memory, and the disk is prepared as one that is installed
// over the network.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "target/disk/booted_volume.h"
#include "target/disk/disk_format.h"
#include "target/disk/target_disk.h"
#include "target/target_console.h"
#include "target/target_store.h"

namespace omniset {

// A file in memory, in pieces, each of which can be let go by itself.
struct HeldFile {
  std::string name;
  std::uint32_t size = 0;
  std::vector<std::vector<std::uint8_t>> pieces;
};

// To the store, and tells the console how far it is. Each piece is let go when it is written.
void writeHeld(HeldFile& file, TargetStore& store, TargetConsole& console);

class LocalInstallation {
 public:
  // `disks`, the console and the boot code outlive the installation.
  LocalInstallation(TargetDisks& disks, TargetConsole& console, BootCode bootCode,
                    DrawNumber drawNumber);

  // Finds the volume by its serial number, see findBootedVolume(), and does everything. Other disks
  // are not written to. `availableMemory`, in bytes, is what the files may take, but for a margin.
  // Raises Failure with a sentence, which tells whether the disk was changed.
  void run(std::optional<std::uint32_t> serialNumber, std::uint64_t availableMemory);

 private:
  std::vector<HeldFile> readAll(const BootedVolume& source, std::uint64_t availableMemory);
  HeldFile read(Volume& volume, const std::string& name, std::uint32_t size);
  void writeAll(const std::string& diskName, std::vector<HeldFile> files);
  void say(const std::string& sentence);

  TargetDisks& disks_;
  TargetConsole& console_;
  BootCode bootCode_;
  DrawNumber drawNumber_;
};

}  // namespace omniset
