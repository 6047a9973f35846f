// What the tests of disks and floppies share: drives with media in them, and a format command.
#pragma once

#include <string>

#include "tests/win/driver/drive_letters.h"
#include "tests/win/window/window_test.h"

namespace omniset::test {

// Time for a disk or a floppy to be written.
constexpr Milliseconds kWritingLimit{40'000};

class DrivesTest : public WindowTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  // A drive with a medium of so many megabytes that has a volume with a file; with 0 megabytes a
  // floppy.
  void attach(char letter, UINT type, int megabytes);
  // One that is there, but whose volume cannot be opened.
  void attachLocked(char letter);
  // Of all that is on the drive.
  std::string sumOf(char letter) const;

  // While formats hang, none comes to its end.
  void hangFormats(bool hang);
  // A line for each format that has ended.
  std::string formatLog() const;
  // What was written to the drive is whole; see drive_holds in tests/win/driver/drives.sh.
  void expectHolds(char letter, const std::string& configuration, const Texts& packages);
  // The file's contents, once expectHolds() has been there.
  std::string fileOf(char letter, const std::string& name) const;

  std::string drivesFolder() const;
};

}  // namespace omniset::test
