// On folders that look like the kernel's.
#include "media/block_devices_posix.h"

#include <gmock/gmock.h>

#include <fstream>

#include "tests/fakes/temp_folder.h"

namespace omniset::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

class BlockDevicesTest : public ::testing::Test {
 protected:
  BlockDevicesTest() {
    put("proc/swaps", "Filename Type Size\n");
    addDisk("sda", "8:0");
    addPartition("sda", "sda1", "8:1");
    addDisk("sdb", "8:16");
    addPartition("sdb", "sdb1", "8:17");
    mounts({"1 0 8:1 / / rw - ext4 /dev/root rw"});
  }

  void put(const std::string& path, const std::string& text) {
    const fs::path file = fs::path(root.path()) / path;
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
  }

  void addDevice(const std::string& name, const std::string& number) {
    put("sys/class/block/" + name + "/dev", number + "\n");
  }

  void addDisk(const std::string& name, const std::string& number) {
    addDevice(name, number);
    put("sys/class/block/" + name + "/queue/logical_block_size", "512\n");
    put("sys/block/" + name + "/device/model", "Card\n");
  }

  // The kernel shows a partition in its disk's folder too.
  void addPartition(const std::string& disk, const std::string& name, const std::string& number) {
    addDevice(name, number);
    put("sys/class/block/" + name + "/partition", "1\n");
    put("sys/class/block/" + disk + "/" + name + "/partition", "1\n");
  }

  void addHolder(const std::string& name, const std::string& holder) {
    put("sys/class/block/" + name + "/holders/" + holder, "");
  }

  void mounts(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    put("proc/self/mountinfo", text);
  }

  std::string obstacle(const std::string& name) { return devices.obstacle(name); }

  TempFolder root;
  BlockDevices devices{fs::path(root.path()) / "sys", fs::path(root.path()) / "proc"};
};

TEST_F(BlockDevicesTest, FindNothingAgainstADiskThatNobodyUses) {
  EXPECT_EQ(obstacle("sdb"), "");
}

TEST_F(BlockDevicesTest, ListDisksButNoCdsFloppiesAndWhatIsMadeOfOthers) {
  for (const char* name : {"sr0", "fd0"}) addDisk(name, "11:0");
  addDevice("dm-0", "253:0");
  put("sys/block/dm-0/dm/name", "root\n");
  EXPECT_THAT(devices.disks(), ElementsAre("sda", "sdb"));
}

TEST_F(BlockDevicesTest, KnowTheDiskThatTheSystemRunsFrom) {
  EXPECT_TRUE(devices.isSystemDisk("sda"));
  EXPECT_FALSE(devices.isSystemDisk("sdb"));
  EXPECT_FALSE(devices.isSystemDisk(""));
  EXPECT_EQ(obstacle("sda"), "the system runs from it");
}

TEST_F(BlockDevicesTest, KnowItBeneathVolumesAndEncryptionToo) {
  addDevice("dm-0", "253:0");
  addDevice("dm-1", "253:1");
  addHolder("sda1", "dm-0");
  addHolder("dm-0", "dm-1");
  put("sys/class/block/sda/sda1/holders/dm-0", "");
  mounts({"1 0 253:1 / / rw - ext4 /dev/mapper/root rw"});
  EXPECT_TRUE(devices.isSystemDisk("sda"));
}

TEST_F(BlockDevicesTest, RefuseADiskOfWhichAPartitionIsMounted) {
  mounts({"1 0 8:1 / / rw - ext4 /dev/root rw",
          "2 1 8:17 / /mnt rw shared:1 master:2 - vfat /dev/sdb1 rw"});
  EXPECT_EQ(obstacle("sdb"), "it is mounted on /mnt");
}

TEST_F(BlockDevicesTest, RefuseADiskThatIsMountedAsAWhole) {
  mounts({"1 0 8:16 / /media/card rw - vfat /dev/sdb rw"});
  EXPECT_EQ(obstacle("sdb"), "it is mounted on /media/card");
}

TEST_F(BlockDevicesTest, RefuseAPartition) {
  EXPECT_EQ(obstacle("sdb1"), "it is a partition; name the whole disk");
}

TEST_F(BlockDevicesTest, RefuseWhatAVolumeGroupOrAnArrayHas) {
  addDevice("md0", "9:0");
  addHolder("sdb1", "md0");
  EXPECT_EQ(obstacle("sdb"), "it is in use by md0");
}

TEST_F(BlockDevicesTest, RefuseWriteProtectedDisksAndLargeSectors) {
  put("sys/class/block/sdb/ro", "1\n");
  EXPECT_EQ(obstacle("sdb"), "it is write-protected");
  put("sys/class/block/sdb/ro", "0\n");
  put("sys/class/block/sdb/queue/logical_block_size", "4096\n");
  EXPECT_EQ(obstacle("sdb"), "its sectors have 4096 bytes; only from those of 512 a PC starts");
}

TEST_F(BlockDevicesTest, TellRemovableDisks) {
  put("sys/class/block/sdb/removable", "1\n");
  EXPECT_TRUE(devices.isRemovable("sdb"));
  EXPECT_FALSE(devices.isRemovable("sda"));
}

TEST_F(BlockDevicesTest, FindTheLoopDeviceOfAnImageByWhateverPath) {
  const std::string image = root.write("disk.img", "content");
  put("sys/block/loop3/loop/backing_file", image + "\n");
  const std::string link = root.path() + "/link.img";
  fs::create_hard_link(image, link);
  EXPECT_EQ(devices.loopDeviceOf(image), "loop3");
  EXPECT_EQ(devices.loopDeviceOf(link), "loop3");
  EXPECT_EQ(devices.loopDeviceOf(root.write("other.img", "content")), "");
}

}  // namespace
}  // namespace omniset::test
