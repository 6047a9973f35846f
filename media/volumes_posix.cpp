#include "media/volumes.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "core/byte_cursor.h"
#include "media/child_process_posix.h"
#include "media/drive_facts_posix.h"
#include "media/volume_files_posix.h"

namespace omniset {

namespace {

constexpr std::uint32_t kDiskDevice = 7;

class DescriptorDevice : public Device {
 public:
  explicit DescriptorDevice(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  std::optional<std::size_t> read(std::span<std::uint8_t> into) override {
    return counted(::read(descriptor_.get(), into.data(), into.size()));
  }
  std::optional<std::size_t> write(std::span<const std::uint8_t> from) override {
    return counted(::write(descriptor_.get(), from.data(), from.size()));
  }
  bool seek(std::uint64_t offset) override {
    return lseek(descriptor_.get(), static_cast<off_t>(offset), SEEK_SET) >= 0;
  }

  // Whatever is asked: the storage device number, which is all that is ever asked for. An image
  // has the number 0.
  std::optional<std::size_t> control(std::uint32_t, std::span<const std::uint8_t>,
                                     std::span<std::uint8_t> out) override {
    ByteWriter writer(out);
    writer.u32le(kDiskDevice);
    writer.u32le(number());
    writer.u32le(0);
    return writer.ok() ? std::optional(out.size()) : std::nullopt;
  }

  std::optional<std::uint64_t> size() override {
    struct stat facts {};
    if (fstat(descriptor_.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(facts.st_size);
  }
  bool close() override { return descriptor_.close(); }

  std::uint32_t number() const {
    struct stat facts {};
    const bool isDevice = fstat(descriptor_.get(), &facts) == 0 && S_ISBLK(facts.st_mode);
    return isDevice ? minor(facts.st_rdev) : 0;
  }

 private:
  static std::optional<std::size_t> counted(ssize_t count) {
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
  }

  FileDescriptor descriptor_;
};

std::unique_ptr<DescriptorDevice> openDescriptor(const std::string& path, int flags) {
  FileDescriptor descriptor(open(path.c_str(), flags | O_CLOEXEC, 0666));
  return descriptor ? std::make_unique<DescriptorDevice>(std::move(descriptor)) : nullptr;
}

class PosixVolumes : public Volumes {
 public:
  explicit PosixVolumes(DeviceOfLetter device) : device_(std::move(device)) {}

  SystemVersion version() const override { return {}; }

  // Disks have no letters; driveType() knows the system's own.
  std::string systemDirectory() override { return {}; }
  std::vector<std::string> driveStrings() override { return diskPaths(); }
  std::uint32_t driveType(const std::string& root) override { return typeOfDisk(root); }
  DriveFacts facts(const std::string& root) override { return readDriveFacts(root); }

  std::string rootPath(char letter) const override { return std::string(1, letter) + ":/"; }

  // Not while something of it is mounted: whoever mounts it in the middle of a job is told.
  DevicePtr openVolume(char letter) override {
    return letter == device_.letter ? openDevice() : nullptr;
  }
  DevicePtr openPhysicalDisk(std::uint32_t number) override {
    auto device = openDevice();
    if (device && device->number() != number) device.reset();
    return device;
  }

  // What the system remembers of the device is forgotten.
  bool flushVolume(char letter) override {
    if (letter != device_.letter) return false;
    FileDescriptor device(open(device_.device.c_str(), O_RDWR | O_CLOEXEC));
    if (!device || fsync(device.get()) != 0) return false;
    struct stat facts {};
    if (fstat(device.get(), &facts) != 0) return false;
    // To empty the buffers of a device is the administrator's right.
    if (S_ISBLK(facts.st_mode) && ioctl(device.get(), BLKFLSBUF, 0) == 0) return true;
    return posix_fadvise(device.get(), 0, 0, POSIX_FADV_DONTNEED) == 0;
  }

  DevicePtr createFile(const std::string& path, Creation creation) override {
    if (isOnDrive(path)) return createFileOnVolume(device_.device, nameOnDrive(path), creation);
    const int flags = creation == Creation::kNew ? O_EXCL : O_TRUNC;
    return openDescriptor(path, O_WRONLY | O_CREAT | flags);
  }
  DevicePtr openFile(const std::string& path) override {
    if (isOnDrive(path)) return openFileOnVolume(device_.device, nameOnDrive(path));
    return openDescriptor(path, O_RDONLY);
  }
  DevicePtr openWritten(const std::string& path) override { return openFile(path); }
  DevicePtr openWithoutAccess(const std::string& path) override {
    return openDescriptor(path, O_RDONLY);
  }

  std::unique_ptr<AbsoluteDisk> openAbsoluteDisk() override { return nullptr; }

 private:
  std::unique_ptr<DescriptorDevice> openDevice() {
    struct stat facts {};
    const bool isBlock = stat(device_.device.c_str(), &facts) == 0 && S_ISBLK(facts.st_mode);
    return openDescriptor(device_.device, O_RDWR | (isBlock ? O_EXCL : 0));
  }

  bool isOnDrive(const std::string& path) const {
    return device_.letter != 0 && path.starts_with(rootPath(device_.letter));
  }
  std::string nameOnDrive(const std::string& path) const {
    return path.substr(rootPath(device_.letter).size());
  }

  DeviceOfLetter device_;
};

}  // namespace

std::unique_ptr<Volumes> makeSystemVolumes(const DeviceOfLetter& device) {
  return std::make_unique<PosixVolumes>(device);
}

}  // namespace omniset
