// Installations onto drives of this computer.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/win/window/drives_test.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class LocalDrive : public DrivesTest {
 protected:
  // The window with a card reader, which is selected, and packages for it.
  void startWithCard() {
    attach('E', DRIVE_REMOVABLE, 32);
    startWindow();
    selectCard();
  }
  void selectCard() {
    window().selectRouter(routers().find("E:\\"));
    window().toggle("wireless");
  }

  void install(const std::string& answer) {
    window().click(IDC_INSTALL);
    DrivenMessageBox box = window().awaitBox("Warning");
    EXPECT_THAT(box.text(), HasSubstr("Everything on drive E:\\ (31 MB, no label) will be "
                                      "erased. Proceed?"));
    EXPECT_EQ(box.buttons(), (Texts{"Yes", "No"}));
    box.answer(answer);
    window().settle();
  }
  void awaitCard(const std::string& status, Milliseconds limit = kPatience) {
    routers().awaitCell(0, kStatusColumn, status, limit);
  }
};

TEST_F(LocalDrive, IsListedWithItsMediumUnlessItIsTheSystemsOrTheFloppy) {
  attach('A', DRIVE_REMOVABLE, 0);
  attach('E', DRIVE_REMOVABLE, 32);
  attach('F', DRIVE_FIXED, 32);
  startWindow();
  ASSERT_EQ(routers().count(), 2);
  EXPECT_THAT(routers().row(0).texts, ElementsAre("E:\\", "Removable media", "Ready"));
  EXPECT_EQ(routers().row(0).image, 4);
  EXPECT_THAT(routers().row(1).texts, ElementsAre("F:\\", "Hard disk", "Ready"));
  EXPECT_EQ(routers().row(1).image, 3);
  window().selectRouter(1);
  window().awaitEnabled(IDC_INSTALL);
  EXPECT_FALSE(window().isEnabled(IDC_KEEP_CONFIGURATION));
  EXPECT_TRUE(window().isEnabled(IDC_BAUD_RATE));
}

TEST_F(LocalDrive, IsInstalledWholeAndItsNeighbourIsNotTouched) {
  attach('F', DRIVE_FIXED, 32);
  const std::string neighbour = sumOf('F');
  startWithCard();
  window().choose(IDC_BAUD_RATE, "115200");
  install("Yes");
  awaitCard("OK", kWritingLimit);
  window().awaitText(IDC_STATUS_LINE, "Installation completed");
  EXPECT_EQ(window().progress(IDC_PROGRESS), 100);
  EXPECT_FALSE(window().isEnabled(IDC_INSTALL));
  expectHolds('E', "124", {"security-2.9.7.bdl", "system-2.9.7.bdl", "wireless-2.9.7.bdl"});
  EXPECT_EQ(fileOf('E', "autorun.scr"), "\n/port set [/port find] baud-rate=115200\n");
  EXPECT_THAT(formatLog(), EndsWith("\\format.com E: /FS:FAT /Q /X /V: [] [n]\n"));
  EXPECT_EQ(sumOf('F'), neighbour);
  EXPECT_EQ(window().lines(IDC_SETS), Texts{"Previous Install"});
}

TEST_F(LocalDrive, InstallsThePcThatItIsPutInto) {
  startWithCard();
  install("Yes");
  awaitCard("OK", kWritingLimit);
  const std::string pc = name_ + "/pc";
  host().request({"start-pc-from-disk", "E", pc});
  host().request({"await-reboot", pc});
  host().request({"disk-holds", name_ + "/packages", pc, "security-2.9.7.bdl", "system-2.9.7.bdl",
                  "wireless-2.9.7.bdl"});
}

TEST_F(LocalDrive, NoLeavesEverythingOnIt) {
  startWithCard();
  const std::string before = sumOf('E');
  install("No");
  EXPECT_EQ(sumOf('E'), before);
  EXPECT_THAT(formatLog(), IsEmpty());
  EXPECT_EQ(routers().row(0).texts.at(kStatusColumn), "Ready");
  EXPECT_THAT(window().lines(IDC_SETS), IsEmpty());
  EXPECT_EQ(packages().marked(), (Texts{"security", "system", "wireless"}));
}

TEST_F(LocalDrive, WhoseVolumeCannotBeOpenedFails) {
  attachLocked('E');
  startWindow();
  selectCard();
  window().click(IDC_INSTALL);
  window().awaitBox("Warning").answer("Yes");
  awaitCard("Failed");
  window().awaitText(IDC_STATUS_LINE, "Installation failed: Cannot open device");
  EXPECT_THAT(formatLog(), IsEmpty());
}

TEST_F(LocalDrive, IsNotErasedForAPackageThatVanished) {
  startWithCard();
  const std::string before = sumOf('E');
  std::filesystem::remove(packageFolder() + "\\system-2.9.7.bdl");
  window().click(IDC_INSTALL);
  DrivenMessageBox box = window().awaitBox("Cannot install");
  EXPECT_THAT(box.text(), HasSubstr("Cannot open file: "));
  box.answer("OK");
  window().settle();
  EXPECT_EQ(sumOf('E'), before);
  EXPECT_EQ(routers().row(0).texts.at(kStatusColumn), "Ready");
}

TEST_F(LocalDrive, WithoutAMediumIsRefused) {
  startWithCard();
  host().request({"empty-drive", "E"});
  window().click(IDC_INSTALL);
  expectBox("Cannot install", "E:\\ cannot be used: there is no medium in it.", "OK");
  EXPECT_EQ(routers().row(0).texts.at(kStatusColumn), "Ready");
}

TEST_F(LocalDrive, CanBeCanceledAndInstalledAnew) {
  startWithCard();
  hangFormats(true);
  install("Yes");
  window().awaitText(IDC_STATUS_LINE, "Formatting drive...");
  window().click(IDC_CANCEL);
  awaitCard("Failed");
  window().awaitText(IDC_STATUS_LINE, "Installation failed: Canceled");
  hangFormats(false);
  window().awaitEnabled(IDC_CANCEL);
  window().click(IDC_CANCEL);
  awaitCard("Ready");
  window().awaitEnabled(IDC_INSTALL);
  // Of the volume that was there only the first sector is gone.
  attach('E', DRIVE_REMOVABLE, 32);
  install("Yes");
  awaitCard("OK", kWritingLimit);
}

TEST_F(LocalDrive, ThatIsBeingWrittenIsLeftWhenTheWindowCloses) {
  startWithCard();
  hangFormats(true);
  install("Yes");
  window().awaitText(IDC_STATUS_LINE, "Formatting drive...");
  endWindow();
}

TEST_F(LocalDrive, ComesAndGoesWhileTheWindowIsOpen) {
  startWindow();
  EXPECT_EQ(routers().count(), 0);
  attach('F', DRIVE_FIXED, 32);
  announceDrive(window().handle(), DBT_DEVICEARRIVAL, 'F');
  routers().awaitCount(1);
  EXPECT_THAT(routers().row(0).texts, ElementsAre("F:\\", "Hard disk", "Ready"));
  detachDrive('F');
  announceDrive(window().handle(), DBT_DEVICEREMOVECOMPLETE, 'F');
  routers().awaitCount(0);
}

}  // namespace
}  // namespace omniset::test
