// Makes a disk and prints how long it took, in seconds, until everything was on the medium and
// until it was read back.
//
//   bench_media IMAGE FOLDER     all files of the folder
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "boot/boot_images.h"
#include "core/trace.h"
#include "media/drive_maker.h"

namespace omniset {
namespace {

using Stopwatch = std::chrono::steady_clock;

// The system's drives; notes when all was flushed.
class TimedVolumes : public Volumes {
 public:
  explicit TimedVolumes(std::shared_ptr<Volumes> volumes) : volumes_(std::move(volumes)) {}

  Stopwatch::time_point flushed() const { return flushed_; }

  bool flushVolume(char letter) override {
    const bool isFlushed = volumes_->flushVolume(letter);
    flushed_ = Stopwatch::now();
    return isFlushed;
  }

  SystemVersion version() const override { return volumes_->version(); }
  std::string systemDirectory() override { return volumes_->systemDirectory(); }
  std::vector<std::string> driveStrings() override { return volumes_->driveStrings(); }
  std::uint32_t driveType(const std::string& root) override { return volumes_->driveType(root); }
  DriveFacts facts(const std::string& root) override { return volumes_->facts(root); }
  std::string rootPath(char letter) const override { return volumes_->rootPath(letter); }
  DevicePtr openVolume(char letter) override { return volumes_->openVolume(letter); }
  DevicePtr openPhysicalDisk(std::uint32_t number) override {
    return volumes_->openPhysicalDisk(number);
  }
  DevicePtr createFile(const std::string& path, Creation creation) override {
    return volumes_->createFile(path, creation);
  }
  DevicePtr openFile(const std::string& path) override { return volumes_->openFile(path); }
  DevicePtr openWritten(const std::string& path) override { return volumes_->openWritten(path); }
  DevicePtr openWithoutAccess(const std::string& path) override {
    return volumes_->openWithoutAccess(path);
  }
  std::unique_ptr<AbsoluteDisk> openAbsoluteDisk() override { return volumes_->openAbsoluteDisk(); }

 private:
  std::shared_ptr<Volumes> volumes_;
  Stopwatch::time_point flushed_;
};

double secondsBetween(Stopwatch::time_point from, Stopwatch::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

void measure(const std::string& image, const std::string& folder) {
  MediaServices services = makeMediaServices(loadBootImage, {'D', image});
  const auto volumes = std::make_shared<TimedVolumes>(services.volumes);
  services.volumes = volumes;
  RInfo what{'D', folder, {}, false, "", 0};
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    what.packageFiles.push_back(entry.path().filename());
  }
  std::sort(what.packageFiles.begin(), what.packageFiles.end());
  const auto started = Stopwatch::now();
  DriveMaker(what, services, 0).run();
  std::printf("%.6f %.6f\n", secondsBetween(started, volumes->flushed()),
              secondsBetween(started, Stopwatch::now()));
}

}  // namespace
}  // namespace omniset

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "Usage: bench_media IMAGE FOLDER\n");
    return 2;
  }
  omniset::setTraceSink(nullptr);
  try {
    omniset::measure(argv[1], argv[2]);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
