#include "tests/fakes/fake_disk.h"

#include <algorithm>
#include <utility>

#include "core/error.h"
#include "core/file_name.h"
#include "target/disk/fat_boot_sector.h"

namespace omniset::test {

namespace {

class FakeFile : public VolumeFile {
 public:
  FakeFile(FakeDisk& disk, FaultPlan& faults, int content, std::string title)
      : disk_(disk), faults_(faults), content_(content), title_(std::move(title)) {
    ++disk_.openFiles;
  }
  ~FakeFile() override { --disk_.openFiles; }

  std::size_t read(std::span<std::uint8_t> into) override {
    faults_.pass(disk_.name + " read " + title_);
    const auto found = disk_.medium.now().contents.find(content_);
    if (found == disk_.medium.now().contents.end()) return 0;
    const std::string& bytes = found->second;
    const std::size_t count = std::min(into.size(), bytes.size() - std::min(at_, bytes.size()));
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at_), count, into.begin());
    at_ += count;
    return count;
  }

  // One that fails has written the half.
  void write(std::span<const std::uint8_t> from) override {
    const std::string bytes(asText(from));
    try {
      faults_.pass(disk_.name + " write " + title_);
    } catch (const Failure&) {
      disk_.medium.writeContent(content_, at_, bytes.substr(0, bytes.size() / 2));
      throw;
    }
    disk_.medium.writeContent(content_, at_, bytes);
    at_ += bytes.size();
  }

  void sync() override {
    faults_.pass(disk_.name + " sync " + title_);
    disk_.medium.syncContent(content_);
  }

 private:
  FakeDisk& disk_;
  FaultPlan& faults_;
  int content_;
  std::string title_;
  std::size_t at_ = 0;
};

class FakeVolume : public Volume {
 public:
  FakeVolume(FakeDisk& disk, FaultPlan& faults, std::uint64_t first, bool isWritable)
      : disk_(disk), faults_(faults), first_(first), isWritable_(isWritable) {
    if (disk_.mounted++ > 0) faults_.violated("two volumes mounted");
  }
  ~FakeVolume() override {
    if (isMounted_) letGo();
  }

  std::vector<VolumeEntry> list() override {
    pass("list", "");
    std::vector<VolumeEntry> entries;
    for (const auto& [folded, entry] : folder().entries) {
      entries.push_back({entry.name, sizeOf(entry.content), entry.isFolder});
    }
    return entries;
  }

  std::uint64_t freeBytes() override {
    pass("free", "");
    return disk_.freeBytes;
  }

  std::unique_ptr<VolumeFile> open(const std::string& name) override {
    pass("open", name);
    return openContent(entryOf(name).content, name);
  }

  std::unique_ptr<VolumeFile> create(const std::string& name) override {
    passWrite("create", name);
    const auto found = folder().entries.find(foldedFileName(name));
    if (found != folder().entries.end()) {
      refuseFolder(found->second);
      disk_.medium.emptyContent(found->second.content);
      return openContent(found->second.content, name);
    }
    const int content = disk_.medium.newContent();
    disk_.medium.setEntry(first_, {name, content, false});
    return openContent(content, name);
  }

  void rename(const std::string& from, const std::string& to) override {
    passWrite("rename", to);
    const FakeFolder::Entry entry = entryOf(from);
    const auto old = folder().entries.find(foldedFileName(to));
    const bool isReplaced = old != folder().entries.end();
    if (isReplaced) refuseFolder(old->second);
    disk_.medium.removeEntry(first_, from);
    if (isReplaced) disk_.medium.removeEntry(first_, to);
    disk_.medium.setEntry(first_, {to, entry.content, false});
  }

  void remove(const std::string& name) override {
    passWrite("remove", name);
    refuseFolder(entryOf(name));
    disk_.medium.removeEntry(first_, name);
  }

  void sync() override {
    pass("sync volume", "");
    disk_.medium.syncFiles();
  }

  void unmount() override {
    pass("unmount", "");
    letGo();
  }

 private:
  const FakeFolder& folder() const { return disk_.medium.folder(first_); }
  std::uint64_t sizeOf(int content) const {
    const auto found = disk_.medium.now().contents.find(content);
    return found == disk_.medium.now().contents.end() ? 0 : found->second.size();
  }
  const FakeFolder::Entry& entryOf(const std::string& name) const {
    const auto found = folder().entries.find(foldedFileName(name));
    if (found == folder().entries.end()) throw Failure("No " + name + " on " + disk_.name + ".");
    return found->second;
  }
  static void refuseFolder(const FakeFolder::Entry& entry) {
    if (entry.isFolder) throw Failure(entry.name + " is a folder.");
  }
  std::unique_ptr<VolumeFile> openContent(int content, const std::string& name) {
    return std::make_unique<FakeFile>(disk_, faults_, content, name);
  }
  void pass(const std::string& operation, const std::string& name) {
    if (!isMounted_) faults_.violated(operation + " after the unmounting");
    faults_.pass(disk_.name + " " + operation + (name.empty() ? "" : " " + name));
  }
  void passWrite(const std::string& operation, const std::string& name) {
    pass(operation, name);
    if (!isWritable_) faults_.violated(operation + " on a volume for reading");
  }
  void letGo() {
    if (disk_.openFiles > 0) faults_.violated("unmounted with a file open");
    isMounted_ = false;
    --disk_.mounted;
  }

  FakeDisk& disk_;
  FaultPlan& faults_;
  std::uint64_t first_;
  bool isWritable_;
  bool isMounted_ = true;
};

class FakeTargetDisk : public TargetDisk {
 public:
  FakeTargetDisk(FakeDisk& disk, FaultPlan& faults) : disk_(disk), faults_(faults) {}

  std::string name() const override { return disk_.name; }
  std::uint64_t sectorCount() const override { return disk_.sectorCount; }
  std::string obstacle() const override { return disk_.obstacle; }

  void readSectors(std::uint64_t first, std::span<std::uint8_t> into) override {
    faults_.pass(disk_.name + " read sectors");
    check(first, into.size());
    for (std::size_t at = 0; at < into.size(); at += kSectorSize) {
      const Sector sector = disk_.medium.sector(first + at / kSectorSize);
      std::copy(sector.begin(), sector.end(), into.begin() + static_cast<std::ptrdiff_t>(at));
    }
  }

  void writeSectors(std::uint64_t first, std::span<const std::uint8_t> from) override {
    faults_.pass(disk_.name + " write sectors");
    check(first, from.size());
    if (disk_.mounted > 0) faults_.violated("sectors written under a volume");
    for (std::size_t at = 0; at < from.size(); at += kSectorSize) {
      Sector sector{};
      std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(at), kSectorSize, sector.begin());
      disk_.medium.writeSector(first + at / kSectorSize, sector);
    }
  }

  void flush() override {
    faults_.pass(disk_.name + " flush");
    disk_.medium.syncSectors();
  }

  void rereadPartitions() override {
    faults_.pass(disk_.name + " reread");
    if (disk_.mounted > 0) faults_.violated("partitions read under a volume");
  }

  std::unique_ptr<Volume> mount(Place place, Access access) override {
    faults_.pass(disk_.name + " mount");
    std::uint64_t first = 0;
    if (place == Place::kFirstPartition) {
      const auto partition = firstPartition(disk_.medium.sector(0), disk_.sectorCount);
      if (!partition) throw Failure("The disk " + disk_.name + " has no partition.");
      first = partition->first;
    }
    if (!looksLikeFat(disk_.medium.sector(first))) {
      throw Failure("The disk " + disk_.name + " has no FAT volume.");
    }
    return std::make_unique<FakeVolume>(disk_, faults_, first, access == Access::kReadWrite);
  }

 private:
  void check(std::uint64_t first, std::size_t length) {
    if (length % kSectorSize != 0) faults_.violated("no whole sectors");
    if (first + length / kSectorSize > disk_.sectorCount) faults_.violated("beyond the disk");
  }

  FakeDisk& disk_;
  FaultPlan& faults_;
};

}  // namespace

void FaultPlan::pass(const std::string& operation) {
  if (isOff) throw Failure("The power is off.");
  const int number = operations++;
  log.push_back(operation);
  if (number == cutPowerAt) {
    isOff = true;
    throw PowerCut();
  }
  const bool fails = failAt != kNever && (number == failAt || (failsForGood && number > failAt));
  if (fails) throw Failure("Cannot do: " + operation + ".");
}

void FaultPlan::restart() {
  operations = 0;
  failAt = kNever;
  failsForGood = false;
  cutPowerAt = kNever;
  isOff = false;
  log.clear();
}

std::map<std::string, std::string> FakeDisk::files(std::uint64_t firstSector) const {
  std::map<std::string, std::string> files;
  for (const auto& [folded, entry] : medium.folder(firstSector).entries) {
    const auto content = medium.now().contents.find(entry.content);
    files[entry.name] = content == medium.now().contents.end() ? "" : content->second;
    if (entry.isFolder) files[entry.name] = "?";
  }
  return files;
}

void FakeDisk::putFile(std::uint64_t firstSector, const std::string& fileName,
                       const std::string& content) {
  const int number = medium.newContent();
  medium.setEntry(firstSector, {fileName, number, false});
  medium.writeContent(number, 0, content);
  medium.syncFiles();
}

void FakeDisk::putFolder(std::uint64_t firstSector, const std::string& folderName) {
  medium.setEntry(firstSector, {folderName, 0, true});
  medium.syncFiles();
}

FakeDisk& FakeDisks::add(const std::string& name, std::uint64_t sectorCount) {
  disks_.push_back(std::make_unique<FakeDisk>());
  disks_.back()->name = name;
  disks_.back()->sectorCount = sectorCount;
  return *disks_.back();
}

std::unique_ptr<TargetDisk> FakeDisks::open(FakeDisk& disk) {
  return std::make_unique<FakeTargetDisk>(disk, faults);
}

std::vector<std::unique_ptr<TargetDisk>> FakeDisks::find() {
  faults.pass("find");
  std::vector<std::unique_ptr<TargetDisk>> found;
  for (const auto& disk : disks_) found.push_back(open(*disk));
  return found;
}

void FakeDisks::cutPower(unsigned seed) {
  for (const auto& disk : disks_) disk->medium.cutPower(seed);
  faults.restart();
}

}  // namespace omniset::test
