#include "media/floppy_maker.h"

#include <exception>
#include <utility>

#include "core/error.h"
#include "core/trace.h"
#include "media/boot_sector.h"
#include "media/format_drive.h"
#include "media/image_file.h"

namespace omniset {

FloppyMaker::FloppyMaker(std::string label, MediaServices services)
    : label_(std::move(label)), services_(std::move(services)) {}

void FloppyMaker::run() {
  try {
    make();
  } catch (const std::exception& failure) {
    traceLine(std::string("floppy maker:") + failure.what());
    statusText_ = failure.what();
    post();
    throw;
  }
}

void FloppyMaker::make() {
  begin("Formatting drive...", 1);
  formatDriveForGood(services_, kFloppyDrive, stopEvent());
  begin("Copying system files...", 1);
  copySystemFiles();
  begin("Setting label...", 0);
  writeLabel();
  begin("Writing boot sector...", 1);
  makeBootable();
  begin("Checking what was written...", 0);
  readBack_.check(*services_.volumes, kFloppyDrive, stopEvent());
  begin(kFloppyCompleted, 1);
}

// The large files count double.
void FloppyMaker::copySystemFiles() {
  copy("linux", kKernelImage, 2);
  copy("initrd.rgz", kRamDiskImage, 2);
  copy("ldlinux.sys", kDiskLoaderImage, 1);
  copy("syslinux.cfg", kFloppyConfigurationImage, 1);
}

void FloppyMaker::copy(const char* name, int image, int steps) {
  requireNoStop(stopEvent());
  const std::string path = services_.volumes->rootPath(kFloppyDrive) + name;
  readBack_.expectBytes(path, writeImageFile(services_, path, image));
  step_ += steps;
  post();
}

void FloppyMaker::writeLabel() {
  requireNoStop(stopEvent());
  const std::string path = services_.volumes->rootPath(kFloppyDrive) + "label.txt";
  writeNewFile(*services_.volumes, path,
               {reinterpret_cast<const std::uint8_t*>(label_.data()), label_.size()});
  readBack_.expectText(path, label_);
}

void FloppyMaker::makeBootable() {
  if (!services_.volumes->version().isNt) {
    installByAbsoluteAccess();
    return;
  }
  const DevicePtr volume = services_.volumes->openVolume(kFloppyDrive);
  if (!volume) throw Failure("Cannot open device");
  readBack_.expectBootSector(installBootSector(*volume));
  closeDevice(*volume);
}

void FloppyMaker::installByAbsoluteAccess() {
  constexpr int kFirstDrive = 0;
  const auto disk = services_.volumes->openAbsoluteDisk();
  if (!disk) throw Failure("Cannot open device");
  DriveSector sector{};
  if (!disk->readSector(kFirstDrive, sector)) throw Failure("Read 95 failed");
  patchBootSector(sector);
  if (!disk->writeSector(kFirstDrive, sector)) throw Failure("Write 95 failed");
  DriveSector written{};
  if (!disk->readSector(kFirstDrive, written)) throw Failure("Read 95 failed");
  if (written != sector) throw Failure("The boot sector differs from what was written");
  if (!disk->close()) throw Failure("Closing device failed");
}

void FloppyMaker::begin(const char* statusText, int steps) {
  requireNoStop(stopEvent());
  statusText_ = statusText;
  step_ += steps;
  post();
}

void FloppyMaker::post() {
  progress_.pushLatest({step_, statusText_});
}

}  // namespace omniset
