#include "target/local_installation.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "core/error.h"
#include "core/file_name.h"
#include "core/format_text.h"
#include "core/mac_address.h"
#include "link/link_frame.h"
#include "target/disk/disk_capacity.h"
#include "target/disk/disk_store.h"
#include "target/disk/size_text.h"
#include "target/disk/volume_files.h"

namespace omniset {

namespace {

// Large enough for the C library to give each back to the system by itself.
constexpr std::size_t kPiece = 512 * 1024;
// For what the system needs to write them: its buffers, and the allocations behind the pieces.
constexpr std::uint64_t kMemoryMargin = 3 * 1024 * 1024;
constexpr std::uint64_t kMostBytes = std::numeric_limits<std::int32_t>::max();
constexpr const char* kWayOut = " Make the disk anew, or install this PC over the network.";

std::string countOfBytes(const HeldFile& file) {
  return file.name + ", " + std::to_string(file.size) + " bytes.";
}

// The packages in the order of the folder, and the script behind them.
std::vector<VolumeEntry> chooseFiles(const std::vector<VolumeEntry>& entries,
                                     const std::string& diskName) {
  std::vector<VolumeEntry> chosen;
  for (const VolumeEntry& entry : entries) {
    if (entry.isFolder || !isPackageFileName(entry.name)) continue;
    if (!isFileName(entry.name)) {
      throw Failure("A file of this name is not taken: " + entry.name + ".");
    }
    chosen.push_back(entry);
  }
  if (chosen.empty()) throw Failure("No package is on the disk " + diskName + ".");
  const VolumeEntry* script = findFile(entries, kScriptName);
  if (!script)
    throw Failure("No " + std::string(kScriptName) + " is on the disk " + diskName + ".");
  chosen.push_back({kScriptName, script->size, false});
  return chosen;
}

std::string inKilobytes(std::uint64_t bytes) {
  return formatText("%u KB", static_cast<unsigned>(bytes / 1024));
}

void requireMemory(const std::vector<VolumeEntry>& files, std::uint64_t availableMemory) {
  const std::uint64_t most =
      std::min(kMostBytes, availableMemory - std::min(availableMemory, kMemoryMargin));
  std::uint64_t needed = 0;
  for (const VolumeEntry& file : files) needed += file.size;
  if (needed <= most) return;
  throw Failure("The packages do not fit into the memory of this PC: they have " +
                inKilobytes(needed + 1023) + ", and there is room for " + inKilobytes(most) + ".");
}

void requireNoObstacle(const TargetDisk& disk) {
  const std::string reason = disk.obstacle();
  if (reason.empty()) return;
  throw Failure("The disk " + disk.name() + " cannot be installed: " + reason +
                ". Change that, or take another disk.");
}

void requireRoom(const TargetDisk& disk, const std::vector<VolumeEntry>& files) {
  MarkedFiles marked;
  for (const VolumeEntry& file : files) {
    marked.push_back({file.name, static_cast<std::uint32_t>(file.size), 0});
  }
  requireCapacity(disk.name(), disk.sectorCount(), marked);
}

}  // namespace

void writeHeld(HeldFile& file, TargetStore& store, TargetConsole& console) {
  store.openFile(file.name, static_cast<std::int32_t>(file.size));
  std::int32_t done = 0;
  for (std::vector<std::uint8_t>& bytes : file.pieces) {
    const std::vector<std::uint8_t> piece = std::move(bytes);
    store.write(piece);
    done += static_cast<std::int32_t>(piece.size());
    console.progress(MacAddress{}, file.name, done, static_cast<std::int32_t>(file.size));
  }
  store.closeFile();
}

LocalInstallation::LocalInstallation(TargetDisks& disks, TargetConsole& console, BootCode bootCode,
                                     DrawNumber drawNumber)
    : disks_(disks), console_(console), bootCode_(bootCode), drawNumber_(std::move(drawNumber)) {}

void LocalInstallation::say(const std::string& sentence) {
  console_.say(MacAddress{}, sentence);
}

void LocalInstallation::run(std::optional<std::uint32_t> serialNumber,
                            std::uint64_t availableMemory) {
  std::string diskName;
  std::vector<HeldFile> files;
  try {
    const BootedVolume source = findBootedVolume(disks_, serialNumber);
    diskName = source.disk->name();
    const unsigned number = source.serialNumber;
    say("Disk " + diskName + ", " + sizeText(source.disk->sectorCount()) +
        formatText(": this PC was started from it, from the volume %04X-%04X.", number >> 16,
                   number & 0xFFFF));
    requireNoObstacle(*source.disk);
    files = readAll(source, availableMemory);
  } catch (const Failure& e) {
    throw Failure(std::string(e.what()) + " Nothing was changed on any disk.");
  }
  say("The packages are in memory, and only there until they are written: do not switch this PC "
      "off.");
  try {
    writeAll(diskName, std::move(files));
  } catch (const Failure& e) {
    throw Failure(std::string(e.what()) + " The installation on the disk " + diskName +
                  " broke off: make the disk anew on the PC that it was made on.");
  }
  say("All is installed. Restarting.");
}

std::vector<HeldFile> LocalInstallation::readAll(const BootedVolume& source,
                                                 std::uint64_t availableMemory) try {
  const auto volume = source.disk->mount(source.place, TargetDisk::Access::kReadOnly);
  const auto chosen = chooseFiles(volume->list(), source.disk->name());
  requireMemory(chosen, availableMemory);
  requireRoom(*source.disk, chosen);
  std::vector<HeldFile> files;
  for (const VolumeEntry& entry : chosen) {
    files.push_back(read(*volume, entry.name, static_cast<std::uint32_t>(entry.size)));
  }
  volume->unmount();
  return files;
} catch (const Failure& e) {
  throw Failure(e.what() + std::string(kWayOut));
}

HeldFile LocalInstallation::read(Volume& volume, const std::string& name, std::uint32_t size) {
  HeldFile file{name, size, {}};
  say("Reading " + countOfBytes(file));
  const auto source = volume.open(name);
  for (std::uint32_t done = 0; done < size;) {
    std::vector<std::uint8_t> piece(std::min<std::size_t>(kPiece, size - done));
    if (source->read(piece) != piece.size()) throw Failure(name + " cannot be read to its end.");
    done += static_cast<std::uint32_t>(piece.size());
    file.pieces.push_back(std::move(piece));
    console_.progress(MacAddress{}, name, static_cast<std::int32_t>(done),
                      static_cast<std::int32_t>(size));
  }
  return file;
}

void LocalInstallation::writeAll(const std::string& diskName, std::vector<HeldFile> files) {
  OneDisk disk(disks_, diskName);
  DiskStore store(
      disk, [this](const std::string& sentence) { say(sentence); }, bootCode_, false, drawNumber_);
  store.beginPreparation(false);
  for (HeldFile& file : files) {
    say("Writing " + countOfBytes(file));
    writeHeld(file, store, console_);
  }
  store.finish();
}

}  // namespace omniset
