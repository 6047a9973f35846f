#include "media/drive_maker.h"

#include <array>
#include <exception>
#include <utility>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/format_text.h"
#include "core/path.h"
#include "core/trace.h"
#include "media/boot_sector.h"
#include "media/file_copy.h"
#include "media/format_drive.h"
#include "media/image_file.h"

namespace omniset {

namespace {

constexpr std::uint32_t kGetStorageDeviceNumber = 0x2D1080;
constexpr std::size_t kScriptPiece = 4096;
constexpr const char* kScriptName = "autorun.scr";

DevicePtr opened(DevicePtr device, const char* failure) {
  if (!device) throw Failure(failure);
  return device;
}

}  // namespace

DriveMaker::DriveMaker(RInfo what, MediaServices services, std::int64_t totalBytes)
    : what_(std::move(what)), services_(std::move(services)) {
  report_.totalBytes = totalBytes;
}

void DriveMaker::run() {
  try {
    make();
  } catch (const std::exception& failure) {
    report_.state = RouterStatus::kFailed;
    report_.statusText = failure.what();
    queueReport();
    throw;
  }
}

void DriveMaker::make() {
  report("Formatting drive...", 0);
  wipeBootRecord();
  formatDriveForGood(services_, what_.driveLetter, stopEvent());
  report("Copying system files...", 0);
  copySystemFiles();
  copyPackages();
  writeScript();
  makeBootable();
  report("Checking what was written...", lastSize_);
  readBack_.check(*services_.volumes, what_.driveLetter, stopEvent());
  report_.state = RouterStatus::kFinished;
  report_.bytesDone = report_.totalBytes;
  report_.statusText = "Installation completed";
  queueReport();
}

void DriveMaker::wipeBootRecord() {
  const std::uint32_t number = deviceNumber();
  const DevicePtr disk =
      opened(services_.volumes->openPhysicalDisk(number), "Cannot open physical device");
  seekDevice(*disk, 0);
  writeDevice(*disk, DriveSector{});
  closeDevice(*disk);
}

// The answer: device type, device number, partition number.
std::uint32_t DriveMaker::deviceNumber() {
  const DevicePtr volume =
      opened(services_.volumes->openVolume(what_.driveLetter), "Cannot open device");
  std::array<std::uint8_t, 12> answer{};
  if (volume->control(kGetStorageDeviceNumber, {}, answer) != answer.size()) {
    throw Failure("IOCTL_GET_DEVICE_NUMBER failed");
  }
  ByteReader reader(answer);
  reader.u32le();
  const std::uint32_t number = reader.u32le();
  const std::uint32_t partition = reader.u32le();
  tracef("device number:%u\n", number);
  tracef("partition number:%u\n", partition);
  closeDevice(*volume);
  return number;
}

void DriveMaker::copySystemFiles() {
  constexpr std::array<std::pair<const char*, int>, 4> kFiles{{
      {"linux", kKernelImage},
      {"initrd.rgz", kRamDiskImage},
      {"ldlinux.sys", kDiskLoaderImage},
      {"syslinux.cfg", kDiskConfigurationImage},
  }};
  for (const auto& [name, image] : kFiles) {
    requireNoStop(stopEvent());
    const std::string path = onDrive(name);
    readBack_.expectBytes(path, writeImageFile(services_, path, image));
  }
}

void DriveMaker::copyPackages() {
  for (const std::string& name : what_.packageFiles) {
    requireNoStop(stopEvent());
    const std::string source = joinPath(what_.packageDirectory, name);
    const std::string target = onDrive(name);
    report("Copying file: " + name, lastSize_);
    lastSize_ = static_cast<std::int64_t>(fileSize(*services_.volumes, source));
    copyFile(*services_.volumes, source, target, stopEvent());
    readBack_.expectCopy(target, source);
  }
}

void DriveMaker::writeScript() {
  requireNoStop(stopEvent());
  const std::string path = onDrive(kScriptName);
  const DevicePtr script =
      opened(services_.volumes->createFile(path, Volumes::Creation::kNew), "Cannot create file");
  std::string written;
  const auto write = [&](std::span<const std::uint8_t> bytes) {
    writeDevice(*script, bytes);
    written.append(bytes.begin(), bytes.end());
  };
  if (what_.useScriptFile) {
    const DevicePtr own =
        opened(services_.volumes->openFile(what_.scriptFile), "Cannot open script");
    std::array<std::uint8_t, kScriptPiece> piece;
    while (const std::size_t count = readDevice(*own, piece)) write(std::span(piece).first(count));
    closeDevice(*own);
  }
  if (what_.baudRate != 0) {
    const std::string line = formatText("\n/port set [/port find] baud-rate=%d\n", what_.baudRate);
    write({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
  }
  closeDevice(*script);
  readBack_.expectText(path, std::move(written));
}

void DriveMaker::makeBootable() {
  const DevicePtr volume =
      opened(services_.volumes->openVolume(what_.driveLetter), "Cannot open device");
  readBack_.expectBootSector(installBootSector(*volume));
  closeDevice(*volume);
}

void DriveMaker::report(const std::string& text, std::int64_t bytes) {
  report_.statusText = text;
  report_.bytesDone += bytes;
  queueReport();
}

void DriveMaker::queueReport() {
  reports_.pushLatest(report_);
}

std::string DriveMaker::onDrive(const std::string& name) const {
  return services_.volumes->rootPath(what_.driveLetter) + name;
}

}  // namespace omniset
