// A target's store on a disk of the PC that is being installed.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "target/disk/crc32.h"
#include "target/disk/disk_preparation.h"
#include "target/disk/installation_mark.h"
#include "target/disk/target_disk.h"
#include "target/target_store.h"

namespace omniset {

// Raises Failure with a sentence for the console. Whatever happens to the power, and whenever: a
// file that is not whole never belongs to an installation that counts (see installation_mark.h).
class DiskStore : public TargetStore {
 public:
  // `disks` and the boot code outlive the store. `bootedFromMedium`: the PC was started by the
  // loader of a disk or a floppy, so that one of the disks may be that medium; see chooseDisk().
  DiskStore(TargetDisks& disks, Say say, BootCode bootCode, bool bootedFromMedium,
            DrawNumber drawNumber);
  ~DiskStore() override { abandon(); }

  // Finds the disk and makes it ready before it returns: no other volume of it may be mounted.
  void beginPreparation(bool keepConfiguration) override;
  bool isPrepared() override { return volume_ != nullptr; }
  void openFile(const std::string& name, std::int32_t size) override;
  void write(std::span<const std::uint8_t> bytes) override;
  void closeFile() override;
  void finish() override;
  // Never raises: what fails is said.
  void abandon() override;

 private:
  // A file while it comes.
  struct Incoming {
    std::string name;
    std::uint32_t size = 0;
    std::unique_ptr<VolumeFile> file;  // none when the one that is there stays
    std::uint64_t written = 0;
    std::size_t unsynced = 0;  // bytes that may still be in memory alone
    Crc32 crc;
  };

  Volume& volume();
  void dropIncoming();
  bool staysAsItIs(const std::string& name, std::int32_t size);
  void requireSpace(const std::string& name, std::uint64_t size);
  MarkedFile takeIncoming();
  MarkedFile takeKept(const std::string& name);
  void note(const MarkedFile& file);

  TargetDisks& disks_;
  Say say_;
  BootCode bootCode_;
  bool bootedFromMedium_;
  DrawNumber drawNumber_;

  std::unique_ptr<TargetDisk> disk_;  // from the preparation on
  std::unique_ptr<Volume> volume_;    // not after finish()
  bool isKept_ = false;
  bool isFinished_ = false;
  MarkedFiles files_;  // that are complete
  std::optional<Incoming> incoming_;
};

}  // namespace omniset
