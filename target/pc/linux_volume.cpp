#include "target/pc/linux_volume.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "core/error.h"
#include "target/pc/system_files.h"

namespace omniset {

namespace {

constexpr const char* kMountPoint = "/volume";
// Names come back as they were given; in the short form FAT keeps their case in two flags.
constexpr const char* kOptions = "codepage=437,iocharset=iso8859-1,shortname=mixed";
// More than a router has there. Memory is scarce, and the kernel goes through the folder for each
// entry.
constexpr std::size_t kMostEntries = 1024;
constexpr unsigned long kFlags = MS_NOATIME | MS_NOSUID | MS_NODEV | MS_NOEXEC;

// Without the file's name: while it is written it has one that says nothing.
[[noreturn]] void failToWrite(const std::string& disk) {
  failWithReason("Cannot write to the disk " + disk);
}

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};

class LinuxVolumeFile : public VolumeFile {
 public:
  LinuxVolumeFile(const std::string& disk, const std::string& name, Descriptor file)
      : disk_(disk), name_(name), file_(std::move(file)) {}

  std::size_t read(std::span<std::uint8_t> into) override {
    std::size_t done = 0;
    while (done < into.size()) {
      const ssize_t length = ::read(file_.get(), into.data() + done, into.size() - done);
      if (length < 0) failWithReason("Cannot read " + name_ + " on the disk " + disk_);
      if (length == 0) break;
      done += static_cast<std::size_t>(length);
    }
    return done;
  }

  void write(std::span<const std::uint8_t> from) override {
    std::size_t done = 0;
    while (done < from.size()) {
      const ssize_t length = ::write(file_.get(), from.data() + done, from.size() - done);
      if (length < 0) failToWrite(disk_);
      done += static_cast<std::size_t>(length);
    }
  }

  void sync() override {
    if (fsync(file_.get()) < 0) failToWrite(disk_);
  }

 private:
  std::string disk_;
  std::string name_;
  Descriptor file_;
};

}  // namespace

LinuxVolume::LinuxVolume(std::string disk, const std::string& device, TargetDisk::Access access)
    : disk_(std::move(disk)) {
  mkdir(kMountPoint, 0700);
  const unsigned long access_flag = access == TargetDisk::Access::kReadOnly ? MS_RDONLY : 0;
  if (mount(device.c_str(), kMountPoint, "vfat", kFlags | access_flag, kOptions) < 0) {
    failWithReason("The disk " + disk_ + " has no FAT volume that can be used");
  }
  root_ = Descriptor(::open(kMountPoint, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (root_.isOpen()) return;
  const int reason = errno;
  umount(kMountPoint);
  errno = reason;
  failWithReason("The volume of the disk " + disk_ + " cannot be read");
}

LinuxVolume::~LinuxVolume() {
  if (!root_.isOpen()) return;
  root_ = Descriptor();
  umount(kMountPoint);
}

std::vector<VolumeEntry> LinuxVolume::list() {
  const std::unique_ptr<DIR, FolderCloser> folder(opendir(kMountPoint));
  if (!folder) failWithReason("The volume of the disk " + disk_ + " cannot be read");
  std::vector<VolumeEntry> entries;
  errno = 0;
  while (const dirent* entry = readdir(folder.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") entries.push_back({name, 0, false});
    if (entries.size() > kMostEntries) {
      throw Failure("The root folder of the disk " + disk_ + " holds too many files.");
    }
    errno = 0;
  }
  if (errno != 0) failWithReason("The volume of the disk " + disk_ + " cannot be read");
  std::erase_if(entries, [&](VolumeEntry& entry) { return !addFacts(entry); });
  return entries;
}

// False when there is no such entry.
bool LinuxVolume::addFacts(VolumeEntry& entry) const {
  struct stat facts {};
  if (fstatat(root_.get(), entry.name.c_str(), &facts, 0) < 0) return false;
  entry.size = static_cast<std::uint64_t>(facts.st_size);
  entry.isFolder = S_ISDIR(facts.st_mode);
  return true;
}

std::uint64_t LinuxVolume::freeBytes() {
  struct statvfs facts {};
  if (fstatvfs(root_.get(), &facts) < 0) {
    failWithReason("The free space of the disk " + disk_ + " is unknown");
  }
  return std::uint64_t{facts.f_bavail} * facts.f_bsize;
}

std::unique_ptr<VolumeFile> LinuxVolume::open(const std::string& name) {
  Descriptor file(openat(root_.get(), name.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) failWithReason("Cannot read " + name + " on the disk " + disk_);
  return std::make_unique<LinuxVolumeFile>(disk_, name, std::move(file));
}

std::unique_ptr<VolumeFile> LinuxVolume::create(const std::string& name) {
  Descriptor file(
      openat(root_.get(), name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!file.isOpen()) failToWrite(disk_);
  return std::make_unique<LinuxVolumeFile>(disk_, name, std::move(file));
}

void LinuxVolume::rename(const std::string& from, const std::string& to) {
  if (renameat(root_.get(), from.c_str(), root_.get(), to.c_str()) < 0) failToWrite(disk_);
}

void LinuxVolume::remove(const std::string& name) {
  if (unlinkat(root_.get(), name.c_str(), 0) < 0) failToWrite(disk_);
}

void LinuxVolume::sync() {
  // The first writes everything to the disk, the second empties the disk's own cache: on FAT
  // syncfs() leaves that out.
  if (syncfs(root_.get()) < 0 || fsync(root_.get()) < 0) failToWrite(disk_);
}

void LinuxVolume::unmount() {
  root_ = Descriptor();
  if (umount(kMountPoint) < 0) failWithReason("The disk " + disk_ + " cannot be let go");
}

}  // namespace omniset
