#include "media/drive_list.h"

#include "core/error.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

class DriveList : public MediaFixture {
 protected:
  std::string listed() {
    std::string text;
    for (const DriveEntry& drive : enumerateDrives(volumes)) {
      text += drive.root + " " + std::to_string(drive.type) + "\n";
    }
    return text;
  }
};

TEST_F(DriveList, HasRemovableAndFixedDrivesButNeitherTheSystemsNorA) {
  volumes.drives['D'].type = 3;
  EXPECT_EQ(listed(), "D:\\ 3\nE:\\ 2\nF:\\ 2\n");
}

TEST_F(DriveList, LeavesOutNetworkDrivesCdsAndRamDisks) {
  for (const std::uint32_t type : {0, 1, 4, 5, 6}) {
    volumes.drives['E'].type = type;
    EXPECT_EQ(listed(), "F:\\ 2\n") << type;
  }
}

TEST_F(DriveList, TakesTheSystemDriveWhereverItIs) {
  volumes.systemFolder = "e:\\windows\\system32";
  volumes.drives['C'].type = 3;
  EXPECT_EQ(listed(), "C:\\ 3\nF:\\ 2\n");
}

TEST_F(DriveList, TracesEachDrive) {
  listed();
  EXPECT_EQ(trace.text(), "drive: E:\\\ndrive: F:\\\n");
}

}  // namespace
}  // namespace omniset::test
