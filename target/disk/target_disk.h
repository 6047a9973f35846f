// The fixed disks of the PC that is being installed, as the agent sees them: sectors to partition
// and format, and a mounted volume to write files to. Every operation that fails raises Failure
// with a sentence for the console that names the disk. Used by one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace omniset {

constexpr std::size_t kSectorSize = 512;

struct VolumeEntry {
  std::string name;
  std::uint64_t size = 0;  // in bytes
  bool isFolder = false;
};

// A file that is open for reading or for writing; closed by its destructor.
class VolumeFile {
 public:
  virtual ~VolumeFile() = default;
  // Returns the number of bytes read, less than asked for only at the end of the file.
  virtual std::size_t read(std::span<std::uint8_t> into) = 0;
  virtual void write(std::span<const std::uint8_t> from) = 0;
  // What was written is on the medium when this returns.
  virtual void sync() = 0;
};

// A mounted file system, of which only the root folder is used. The destructor unmounts it, without
// a word when that fails. Names are compared without regard to case, as FAT does.
class Volume {
 public:
  virtual ~Volume() = default;
  virtual std::vector<VolumeEntry> list() = 0;
  virtual std::uint64_t freeBytes() = 0;
  virtual std::unique_ptr<VolumeFile> open(const std::string& name) = 0;
  // Makes the file, or empties the one of that name.
  virtual std::unique_ptr<VolumeFile> create(const std::string& name) = 0;
  // Replaces a file that already has the new name.
  virtual void rename(const std::string& from, const std::string& to) = 0;
  virtual void remove(const std::string& name) = 0;
  // All that was written to the volume, names too, is on the medium when this returns.
  virtual void sync() = 0;
  // Nothing of the volume may be used afterwards, and no file of it may be open.
  virtual void unmount() = 0;
};

class TargetDisk {
 public:
  enum class Place { kFirstPartition, kWholeDisk };
  enum class Access { kReadOnly, kReadWrite };

  virtual ~TargetDisk() = default;

  // The system's name, such as "sda".
  virtual std::string name() const = 0;
  virtual std::uint64_t sectorCount() const = 0;
  // Why nothing can be installed on it, such as "it is write-protected"; empty when nothing
  // hinders.
  virtual std::string obstacle() const = 0;

  // Whole sectors: the length of the bytes is a multiple of kSectorSize.
  virtual void readSectors(std::uint64_t first, std::span<std::uint8_t> into) = 0;
  virtual void writeSectors(std::uint64_t first, std::span<const std::uint8_t> from) = 0;
  // What was written to the sectors is on the medium when this returns.
  virtual void flush() = 0;
  // Makes the system see a partition table that was just written.
  virtual void rereadPartitions() = 0;

  // At most one volume of a disk is mounted at a time, and no sector is written meanwhile.
  virtual std::unique_ptr<Volume> mount(Place place, Access access) = 0;
};

class TargetDisks {
 public:
  virtual ~TargetDisks() = default;
  // The fixed disks that are there now, in the system's order.
  virtual std::vector<std::unique_ptr<TargetDisk>> find() = 0;
};

}  // namespace omniset
