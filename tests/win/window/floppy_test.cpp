// Boot floppies from the window.
#include <gmock/gmock.h>

#include "tests/win/window/drives_test.h"

namespace omniset::test {
namespace {

using ::testing::EndsWith;
using ::testing::IsEmpty;

class Floppy : public DrivesTest {
 protected:
  DrivenDialog openDialog() {
    window().click(IDC_MAKE_FLOPPY);
    return window().awaitDialog("Make Installation Floppy");
  }

  void expectUsable(const DrivenDialog& dialog, bool idle) {
    dialog.awaitEnabled(IDC_MAKER_START, idle);
    EXPECT_EQ(dialog.isEnabled(IDC_MAKER_LABEL), idle);
    EXPECT_EQ(dialog.isEnabled(IDC_MAKER_DONE), idle);
    EXPECT_EQ(dialog.isEnabled(IDC_MAKER_CANCEL), !idle);
  }

  void startHanging(DrivenDialog& dialog) {
    hangFormats(true);
    dialog.click(IDC_MAKER_START);
    dialog.awaitText(IDC_MAKER_STATUS, "Formatting drive...");
    EXPECT_EQ(dialog.text(IDC_MAKER_EXPLANATION), "Please wait...");
    expectUsable(dialog, false);
  }
};

TEST_F(Floppy, IsMadeWholeWithItsLabel) {
  attach('A', DRIVE_REMOVABLE, 0);
  startWindow();
  DrivenDialog dialog = openDialog();
  EXPECT_EQ(dialog.text(IDC_MAKER_LABEL), "veltrona");
  EXPECT_EQ(dialog.text(IDC_MAKER_STATUS), "Status");
  expectUsable(dialog, true);
  dialog.type(IDC_MAKER_LABEL, "rack 7");
  startHanging(dialog);
  dialog.awaitFocus(IDC_MAKER_CANCEL);
  hangFormats(false);
  dialog.awaitText(IDC_MAKER_STATUS, "Completed", kWritingLimit);
  EXPECT_EQ(dialog.progress(IDC_MAKER_PROGRESS), 100);
  dialog.awaitText(IDC_MAKER_EXPLANATION, "Another floppy?");
  expectUsable(dialog, true);
  dialog.awaitFocus(IDC_MAKER_START);
  dialog.click(IDC_MAKER_DONE);
  dialog.awaitClosed();
  window().settle();
  EXPECT_EQ(storedText("Default Label"), "rack 7");
  EXPECT_THAT(formatLog(), EndsWith("\\format.com A: /FS:FAT /Q /X /V: [] [n]\n"));
  expectHolds('A', "123", {});
  EXPECT_EQ(fileOf('A', "label.txt"), "rack 7");
}

TEST_F(Floppy, StartsAPcThatIsInstalledOverTheNetwork) {
  attach('A', DRIVE_REMOVABLE, 0);
  startWindow();
  DrivenDialog dialog = openDialog();
  dialog.click(IDC_MAKER_START);
  dialog.awaitText(IDC_MAKER_STATUS, "Completed", kWritingLimit);
  dialog.click(IDC_MAKER_DONE);
  dialog.awaitClosed();
  const std::string pc = name_ + "/pc";
  host().request({"start-pc-from-floppy", "A", pc});
  std::string address = host().request({"mac-of-pc", pc});
  address.resize(address.find('\n'));
  waitUntil(
      "a row of the PC", [&] { return !routers().rows().empty(); }, {}, kBootLimit);
  selectReadyRouter(address);
  window().toggle("system");
  window().click(IDC_INSTALL);
  awaitStatus("Waiting reboot", address, kBootLimit);
  window().awaitText(IDC_STATUS_LINE, kRebootPrompt);
  window().click(IDC_INSTALL);
  awaitStatus("OK", address);
  host().request({"await-reboot", pc});
  host().request({"disk-holds", name_ + "/packages", pc, "system-2.9.7.bdl"});
}

TEST_F(Floppy, ThatIsNotInItsDriveFailsAndWithoutALabelIsUnnamed) {
  storeText("Default Label", "attic");
  startWindow();
  DrivenDialog dialog = openDialog();
  EXPECT_EQ(dialog.text(IDC_MAKER_LABEL), "attic");
  dialog.type(IDC_MAKER_LABEL, "");
  dialog.click(IDC_MAKER_START);
  dialog.awaitText(IDC_MAKER_EXPLANATION, "Another floppy?");
  EXPECT_EQ(dialog.text(IDC_MAKER_STATUS), "Cannot create file");
  expectUsable(dialog, true);
  dialog.close();
  dialog.awaitClosed();
  window().settle();
  EXPECT_EQ(storedText("Default Label"), "Unnamed");
}

TEST_F(Floppy, CanBeCanceled) {
  attach('A', DRIVE_REMOVABLE, 0);
  startWindow();
  const std::string before = sumOf('A');
  DrivenDialog dialog = openDialog();
  startHanging(dialog);
  dialog.click(IDC_MAKER_CANCEL);
  dialog.awaitText(IDC_MAKER_STATUS, "Canceled");
  dialog.awaitText(IDC_MAKER_EXPLANATION, "Another floppy?");
  expectUsable(dialog, true);
  EXPECT_EQ(sumOf('A'), before);
  EXPECT_THAT(formatLog(), IsEmpty());
}

TEST_F(Floppy, IsStoppedByTheEscapeKeyBeforeTheDialogCloses) {
  attach('A', DRIVE_REMOVABLE, 0);
  startWindow();
  DrivenDialog dialog = openDialog();
  startHanging(dialog);
  dialog.press(IDC_MAKER_CANCEL, VK_ESCAPE);
  dialog.awaitClosed();
  EXPECT_TRUE(window().hasOnlyMainWindow());
  endWindow();
}

}  // namespace
}  // namespace omniset::test
