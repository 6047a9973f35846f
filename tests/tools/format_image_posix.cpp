// format-image FILE BYTES: makes an image of a disk of that size, partitioned and formatted as a
// target's disk is.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "core/error.h"
#include "target/disk/disk_format.h"

namespace {

using namespace omniset;

class ImageDisk : public TargetDisk {
 public:
  ImageDisk(const char* path, std::uint64_t bytes)
      : file_(open(path, O_RDWR | O_CREAT | O_TRUNC, 0666)), bytes_(bytes) {
    if (file_ < 0 || ftruncate(file_, static_cast<off_t>(bytes)) != 0) fail("made");
  }
  ~ImageDisk() override { close(file_); }

  std::string name() const override { return "image"; }
  std::uint64_t sectorCount() const override { return bytes_ / kSectorSize; }
  std::string obstacle() const override { return {}; }

  void readSectors(std::uint64_t first, std::span<std::uint8_t> into) override {
    const ssize_t length = pread(file_, into.data(), into.size(), offsetOf(first));
    if (length != static_cast<ssize_t>(into.size())) fail("read");
  }
  void writeSectors(std::uint64_t first, std::span<const std::uint8_t> from) override {
    const ssize_t length = pwrite(file_, from.data(), from.size(), offsetOf(first));
    if (length != static_cast<ssize_t>(from.size())) fail("written");
  }
  void flush() override {}
  void rereadPartitions() override {}
  std::unique_ptr<Volume> mount(Place, Access) override { fail("mounted"); }

 private:
  static off_t offsetOf(std::uint64_t sector) { return static_cast<off_t>(sector * kSectorSize); }
  [[noreturn]] static void fail(const std::string& done) {
    throw Failure("The image cannot be " + done + ".");
  }

  int file_;
  std::uint64_t bytes_;
};

void formatImage(const char* path, std::uint64_t bytes) {
  const Partition partition = planPartition("image", bytes / kSectorSize);
  ImageDisk disk(path, bytes);
  std::uint32_t number = 0x10203040;
  formatDisk(disk, partition, {}, [&] { return number++; });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: format-image FILE BYTES\n");
    return 2;
  }
  try {
    formatImage(argv[1], std::strtoull(argv[2], nullptr, 10));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
  return 0;
}
