#include "tests/win/window/drives_test.h"

#include <cstdlib>
#include <filesystem>

#include "tests/fakes/temp_folder.h"

namespace omniset::test {

std::string DrivesTest::drivesFolder() const {
  const char* folder = std::getenv("OMNISET_TEST_DRIVES");
  if (!folder) throw WindowFault("OMNISET_TEST_DRIVES is not set; run tests/win/window_run");
  return folder;
}

void DrivesTest::SetUp() {
  WindowTest::SetUp();
  std::filesystem::remove(drivesFolder() + "\\format.log");
}

void DrivesTest::TearDown() {
  hangFormats(false);
  WindowTest::TearDown();
  for (const char letter : {'A', 'E', 'F'}) detachDrive(letter);
}

void DrivesTest::attach(char letter, UINT type, int megabytes) {
  const std::string folder =
      host().request({"insert-drive", std::string(1, letter), std::to_string(megabytes)});
  attachDrive(letter, type, folder, folder + ".img");
}

void DrivesTest::attachLocked(char letter) {
  const std::string folder = host().request({"insert-drive", std::string(1, letter), "32"});
  host().request({"lock-drive", std::string(1, letter)});
  attachDrive(letter, DRIVE_REMOVABLE, folder, folder + ".locked");
}

std::string DrivesTest::sumOf(char letter) const {
  return host().request({"drive-sum", std::string(1, letter)});
}

void DrivesTest::hangFormats(bool hang) {
  const std::string sign = drivesFolder() + "\\hang";
  if (hang) {
    writeBytes(sign, "");
  } else {
    std::filesystem::remove(sign);
  }
}

std::string DrivesTest::formatLog() const {
  const std::string log = drivesFolder() + "\\format.log";
  return std::filesystem::exists(log) ? readFile(log) : "";
}

void DrivesTest::expectHolds(char letter, const std::string& configuration, const Texts& packages) {
  Texts words{"drive-holds", std::string(1, letter), configuration, name_ + "/packages"};
  words.insert(words.end(), packages.begin(), packages.end());
  EXPECT_NO_THROW(host().request(words));
}

std::string DrivesTest::fileOf(char letter, const std::string& name) const {
  return readFile(drivesFolder() + "\\" + letter + ".files\\" + name);
}

}  // namespace omniset::test
