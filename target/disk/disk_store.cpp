#include "target/disk/disk_store.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "core/error.h"
#include "core/file_name.h"
#include "link/link_frame.h"
#include "target/disk/mark_file.h"
#include "target/disk/volume_files.h"

namespace omniset {

namespace {

// So that the wait at the end of a file is short on a slow disk too: the installer takes a target
// that does not answer for long as gone.
constexpr std::size_t kMostUnsynced = 4 * 1024 * 1024;

}  // namespace

DiskStore::DiskStore(TargetDisks& disks, Say say, BootCode bootCode, bool bootedFromMedium,
                     DrawNumber drawNumber)
    : disks_(disks),
      say_(std::move(say)),
      bootCode_(bootCode),
      bootedFromMedium_(bootedFromMedium),
      drawNumber_(std::move(drawNumber)) {}

void DiskStore::beginPreparation(bool keepConfiguration) {
  abandon();
  auto disk = chooseDisk(disks_, bootedFromMedium_, say_);
  PreparedVolume prepared =
      DiskPreparation(*disk, say_, bootCode_, drawNumber_).run(keepConfiguration);
  disk_ = std::move(disk);
  volume_ = std::move(prepared.volume);
  isKept_ = prepared.isKept;
}

// After finish() the volume is mounted again, and the installation no longer counts.
Volume& DiskStore::volume() {
  if (!disk_) throw Failure("The disk has not been prepared.");
  if (!volume_) {
    isFinished_ = false;
    auto volume = disk_->mount(TargetDisk::Place::kFirstPartition, TargetDisk::Access::kReadWrite);
    writeBegunMark(*volume);
    volume_ = std::move(volume);
  }
  return *volume_;
}

void DiskStore::openFile(const std::string& name, std::int32_t size) {
  if (!isFileName(name)) throw Failure("A file of this name is not taken: " + name);
  if (files_.size() == kMostMarkedFiles) throw Failure("Too many files; the next is " + name);
  volume();
  dropIncoming();
  Incoming incoming{name, static_cast<std::uint32_t>(size), nullptr, 0, 0, {}};
  if (!staysAsItIs(name, size)) {
    requireSpace(name, incoming.size);
    incoming.file = volume_->create(kPartName);
  }
  incoming_ = std::move(incoming);
}

// An empty script stands for the configuration that is kept, and one that the router has not run
// yet is part of that.
bool DiskStore::staysAsItIs(const std::string& name, std::int32_t size) {
  return isKept_ && size == 0 && isSameFileName(name, kScriptName) &&
         findFile(volume_->list(), name);
}

void DiskStore::requireSpace(const std::string& name, std::uint64_t size) {
  const std::uint64_t free = volume_->freeBytes();
  if (size <= free) return;
  throw Failure("Not enough space on disk " + disk_->name() + " for " + name + ": " +
                std::to_string(size) + " bytes needed, " + std::to_string(free) + " free.");
}

void DiskStore::write(std::span<const std::uint8_t> bytes) {
  if (!incoming_ || !incoming_->file) throw Failure("No file is being written.");
  incoming_->file->write(bytes);
  incoming_->crc.add(bytes);
  incoming_->written += bytes.size();
  incoming_->unsynced += bytes.size();
  if (incoming_->unsynced < kMostUnsynced) return;
  incoming_->file->sync();
  incoming_->unsynced = 0;
}

void DiskStore::closeFile() {
  if (!incoming_) throw Failure("No file is being written.");
  note(incoming_->file ? takeIncoming() : takeKept(incoming_->name));
}

MarkedFile DiskStore::takeIncoming() {
  const MarkedFile file{incoming_->name, incoming_->size, incoming_->crc.value()};
  if (incoming_->written != file.size) throw Failure(file.name + " is not complete.");
  incoming_->file->sync();
  incoming_->file.reset();
  volume_->rename(kPartName, file.name);
  incoming_.reset();
  return file;
}

MarkedFile DiskStore::takeKept(const std::string& name) {
  incoming_.reset();
  FileCheck check(volume_->open(name));
  while (check.step()) {
  }
  say_("The " + name + " that is on disk " + disk_->name() + " stays as it is.");
  return {name, static_cast<std::uint32_t>(check.size()), check.crc()};
}

void DiskStore::note(const MarkedFile& file) {
  std::erase_if(files_, [&](const MarkedFile& old) { return isSameFileName(old.name, file.name); });
  files_.push_back(file);
}

void DiskStore::finish() {
  if (isFinished_) return;
  Volume& target = volume();
  dropIncoming();
  if (const MarkedFile* missing = findMissing(target.list(), files_)) {
    throw Failure(missing->name + " is not on disk " + disk_->name() + " as it was written.");
  }
  writeMark(target, files_);
  target.unmount();
  volume_.reset();
  disk_->flush();
  isFinished_ = true;
  say_("Disk " + disk_->name() + ": all " + std::to_string(files_.size()) +
       " files are written and safe.");
}

void DiskStore::dropIncoming() {
  if (!incoming_) return;
  const bool hasPart = incoming_->file != nullptr;
  incoming_.reset();
  if (hasPart) volume_->remove(kPartName);
}

void DiskStore::abandon() {
  try {
    dropIncoming();
    if (volume_) volume_->unmount();
  } catch (const std::exception& e) {
    say_(e.what());
  }
  volume_.reset();
  disk_.reset();
  files_.clear();
  isKept_ = false;
  isFinished_ = false;
}

}  // namespace omniset
