// The system's own drives and format command on image files: mkfs.fat and mtools at work.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "core/path.h"
#include "media/boot_sector.h"
#include "media/drive_checks.h"
#include "media/drive_maker.h"
#include "media/format_drive.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_volumes.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

class SystemVolumesOnAnImage : public ::testing::Test {
 protected:
  void makeImage(std::uint64_t bytes) {
    image = joinPath(folder.path(), "disk.img");
    std::ofstream(image).put('x');
    ASSERT_EQ(truncate(image.c_str(), static_cast<off_t>(bytes)), 0);
    services = makeMediaServices(fakeImage, {'D', image});
  }

  void formatImage() { formatDrive(services, 'D', stopEvent); }

  Volumes& volumes() { return *services.volumes; }

  void write(const std::string& name, const Bytes& bytes,
             Volumes::Creation creation = Volumes::Creation::kNew) {
    const DevicePtr file = volumes().createFile("D:/" + name, creation);
    ASSERT_TRUE(file) << name;
    EXPECT_EQ(file->write(bytes), bytes.size());
    EXPECT_TRUE(file->close());
  }

  Bytes read(const std::string& name) {
    Bytes bytes(4 << 20);
    const DevicePtr file = volumes().openWritten("D:/" + name);
    std::size_t filled = 0;
    while (const auto count = file->read(std::span(bytes).subspan(filled))) {
      if (*count == 0) break;
      filled += *count;
    }
    bytes.resize(filled);
    EXPECT_TRUE(file->close());
    return bytes;
  }

  DriveSector sectorAt(std::uint64_t offset) {
    const DevicePtr volume = volumes().openVolume('D');
    DriveSector sector{};
    EXPECT_TRUE(volume->seek(offset));
    EXPECT_EQ(volume->read(sector), sector.size());
    return sector;
  }

  SilentTrace silence;
  TempFolder folder;
  std::string image;
  MediaServices services;
  Event stopEvent{true, false};
};

std::string typeIn(const DriveSector& sector) {
  return {sector.begin() + 54, sector.begin() + 59};
}

TEST_F(SystemVolumesOnAnImage, FormatFloppiesWithFat12AndDisksWithFat16) {
  makeImage(kFloppyBytes);
  formatImage();
  EXPECT_EQ(typeIn(sectorAt(0)), "FAT12");
  makeImage(64 << 20);
  formatImage();
  EXPECT_EQ(typeIn(sectorAt(0)), "FAT16");
}

TEST_F(SystemVolumesOnAnImage, FormatAtMostTwoGigabytesOfALargerDisk) {
  makeImage(std::uint64_t{4} << 30);
  formatImage();
  const DriveSector sector = sectorAt(0);
  EXPECT_EQ(typeIn(sector), "FAT16");
  const std::uint32_t sectors = sector[32] | sector[33] << 8 | sector[34] << 16 | sector[35] << 24;
  EXPECT_LE(sectors, 2047u * 2048);
  EXPECT_GT(sectors, 2046u * 2048);
}

TEST_F(SystemVolumesOnAnImage, HoldWhatIsWrittenByWhateverName) {
  makeImage(64 << 20);
  formatImage();
  Bytes large(3'000'001);
  for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<std::uint8_t>(i * i >> 7);
  for (const std::string name :
       {"linux", "system-2.9.7.bdl", "a [b] {c} & d's.bdl", "f\xC3\xBCr.bdl"}) {
    SCOPED_TRACE(name);
    write(name, large);
    EXPECT_TRUE(volumes().flushVolume('D'));
    EXPECT_EQ(read(name), large);
  }
  write("empty", {});
  EXPECT_EQ(read("empty"), Bytes());
}

TEST_F(SystemVolumesOnAnImage, MakeANewFileOnlyWhereThereIsNone) {
  makeImage(64 << 20);
  formatImage();
  write("Linux", bytesOf("one"));
  EXPECT_FALSE(volumes().createFile("D:/linux", Volumes::Creation::kNew));
  write("linux", bytesOf("two"), Volumes::Creation::kOverwrite);
  EXPECT_EQ(read("linux"), bytesOf("two"));
}

TEST_F(SystemVolumesOnAnImage, MakeNoFileWhereThereIsNoVolume) {
  makeImage(64 << 20);
  EXPECT_FALSE(volumes().createFile("D:/linux", Volumes::Creation::kNew));
}

TEST_F(SystemVolumesOnAnImage, ReportAFullVolumeAndAMissingFile) {
  makeImage(kFloppyBytes);
  formatImage();
  const DevicePtr file = volumes().createFile("D:/large", Volumes::Creation::kNew);
  const Bytes bytes(2 << 20);
  const bool isWritten = file->write(bytes) == bytes.size();
  EXPECT_FALSE(file->close() && isWritten);
  const DevicePtr missing = volumes().openFile("D:/missing");
  Bytes buffer(100);
  EXPECT_FALSE(missing->read(buffer));
}

// So little that it is written before anybody complains.
TEST_F(SystemVolumesOnAnImage, ReportAFullVolumeOfTheLastFileToo) {
  makeImage(kFloppyBytes);
  formatImage();
  write("large", Bytes(1'450'000));
  const DevicePtr file = volumes().createFile("D:/small", Volumes::Creation::kNew);
  const Bytes bytes(20'000);
  EXPECT_EQ(file->write(bytes), bytes.size());
  EXPECT_FALSE(file->close());
}

// Whatever the format chose: a drive that has room by our count is not full before all is there.
TEST_F(SystemVolumesOnAnImage, HaveRoomForWhatIsCounted) {
  for (const std::uint64_t megabytes : {16, 33, 300}) {
    SCOPED_TRACE(megabytes);
    makeImage(megabytes << 20);
    formatImage();
    const std::uint64_t cluster = megabytes == 16 ? 8192 : megabytes == 33 ? 16'384 : 16'384;
    const std::uint64_t room = (megabytes << 20) - bytesNeeded({}, megabytes << 20);
    const DevicePtr file = volumes().createFile("D:/whole", Volumes::Creation::kNew);
    Bytes bytes(room / cluster * cluster);
    EXPECT_EQ(file->write(bytes), bytes.size());
    EXPECT_TRUE(file->close());
  }
}

TEST_F(SystemVolumesOnAnImage, RefuseAnImageThatAnotherProgramHasLocked) {
  makeImage(64 << 20);
  const int program = open(image.c_str(), O_RDWR);
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_start = 100;
  lock.l_len = 1;
  ASSERT_EQ(fcntl(program, F_OFD_SETLK, &lock), 0);
  EXPECT_EQ(volumes().facts(image).obstacle, "another program uses it");
  close(program);
  EXPECT_EQ(volumes().facts(image).obstacle, "");
}

TEST_F(SystemVolumesOnAnImage, BecomeADiskWhileTheImageBesideItStaysAsItIs) {
  makeImage(64 << 20);
  const std::string neighbour = folder.write("neighbour.img", std::string(1 << 20, 'n'));
  folder.write("system-2.9.bdl", "the system");
  DriveMaker maker({'D', folder.path(), {"system-2.9.bdl"}, false, "", 115200}, services, 10);
  maker.run();
  EXPECT_EQ(maker.reports().pop()->statusText, "Installation completed");
  EXPECT_EQ(read("system-2.9.bdl"), bytesOf("the system"));
  EXPECT_EQ(read("autorun.scr"), bytesOf("\n/port set [/port find] baud-rate=115200\n"));
  EXPECT_EQ(read("linux"), bytesOf("image 120"));
  const DriveSector sector = sectorAt(0);
  EXPECT_TRUE(
      std::equal(sector.begin() + 62, sector.begin() + 510, bootSectorTemplate.begin() + 62));
  EXPECT_EQ(readFile(neighbour), std::string(1 << 20, 'n'));
}

TEST_F(SystemVolumesOnAnImage, FindTheDiskOfTheVolumeByItsNumber) {
  makeImage(64 << 20);
  const DevicePtr volume = volumes().openVolume('D');
  std::array<std::uint8_t, 12> answer{};
  EXPECT_EQ(volume->control(0x2D1080, {}, answer), 12u);
  EXPECT_TRUE(volumes().openPhysicalDisk(answer[4]));
  EXPECT_FALSE(volumes().openPhysicalDisk(answer[4] + 1u));
  EXPECT_FALSE(volumes().openVolume('E'));
}

TEST_F(SystemVolumesOnAnImage, TellWhatIsOnIt) {
  makeImage(64 << 20);
  EXPECT_EQ(volumes().facts(image).bytes, 64u << 20);
  EXPECT_EQ(volumes().facts(image).obstacle, "");
  formatImage();
  EXPECT_EQ(volumes().facts(image).contents, "FAT16 volume");
  EXPECT_EQ(volumes().facts(joinPath(folder.path(), "none")).obstacle, "it does not exist");
  EXPECT_EQ(volumes().facts("/dev/null").obstacle, "it is neither a disk nor an image file");
  EXPECT_EQ(volumes().facts(folder.path()).obstacle, "it is neither a disk nor an image file");
}

}  // namespace
}  // namespace omniset::test
