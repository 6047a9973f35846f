// The window of a computer on which the program never ran.
#include <gmock/gmock.h>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

constexpr int kNarrowestUsefulColumn = 40;  // pixels

class FirstRun : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    clearSettings();
    startWindow();
  }
};

TEST_F(FirstRun, PlacesTheWindowAt20And20) {
  EXPECT_EQ(window().rectangle().left, 20);
  EXPECT_EQ(window().rectangle().top, 20);
}

TEST_F(FirstRun, Chooses9600BaudOfThirteenSpeeds) {
  EXPECT_EQ(window().chosenLine(IDC_BAUD_RATE), "9600");
  EXPECT_THAT(window().lines(IDC_BAUD_RATE),
              ElementsAre("110", "300", "1200", "2400", "4800", "9600", "19200", "38400", "57600",
                          "115200", "230400", "460800", "921600"));
}

TEST_F(FirstRun, LooksForPackagesInTheFirstDrive) {
  EXPECT_EQ(window().text(IDC_FOLDER), "C:\\");
  EXPECT_EQ(packages().count(), 0);
  window().awaitStatusBar("No packages in this directory");
}

TEST_F(FirstRun, HasNoPackageSets) {
  EXPECT_THAT(window().lines(IDC_SETS), IsEmpty());
}

TEST_F(FirstRun, ShowsEveryTextOfTheDialog) {
  EXPECT_EQ(window().caption(), "Veltrona Router Installer v1.8");
  EXPECT_THAT(window().allTexts(), IsSupersetOf({"Routers/Drives",
                                                 "Make floppy",
                                                 "Net booting",
                                                 "Install",
                                                 "Cancel",
                                                 "Help",
                                                 "Keep old configuration",
                                                 "IP address:",
                                                 "/",
                                                 "Gateway:",
                                                 "Baud rate:",
                                                 "Configure script:",
                                                 "...",
                                                 "Packages",
                                                 "Sets:",
                                                 "Save set",
                                                 "Delete set",
                                                 "From:",
                                                 "Browse...",
                                                 "Select all",
                                                 "Select none"}));
}

TEST_F(FirstRun, TitlesTheColumnsOfBothLists) {
  EXPECT_THAT(routers().titles(), ElementsAre("Label", "MAC address / Media", "Status"));
  EXPECT_THAT(packages().titles(), ElementsAre("Name", "Version", "Description"));
  EXPECT_THAT(routers().columnWidths(), Each(Ge(kNarrowestUsefulColumn)));
  EXPECT_THAT(packages().columnWidths(), Each(Ge(kNarrowestUsefulColumn)));
}

TEST_F(FirstRun, EnablesNothingThatNeedsARouter) {
  for (const int id :
       {IDC_INSTALL, IDC_CANCEL, IDC_KEEP_CONFIGURATION, IDC_BAUD_RATE, IDC_USE_SCRIPT,
        IDC_CHOOSE_SCRIPT, IDC_SAVE_SET, IDC_DELETE_SET, IDC_SELECT_ALL, IDC_SELECT_NONE}) {
    EXPECT_FALSE(window().isEnabled(id)) << "control " << id;
  }
  for (const int id : {IDC_ADDRESS, IDC_NETMASK, IDC_GATEWAY, IDC_SCRIPT_FILE}) {
    EXPECT_FALSE(window().isWritable(id)) << "control " << id;
  }
}

TEST_F(FirstRun, EnablesTheFolderTheSetsNetBootingAndTheHelp) {
  for (const int id : {IDC_FOLDER, IDC_BROWSE, IDC_SETS, IDC_NET_BOOTING, IDC_SHOW_HELP}) {
    EXPECT_TRUE(window().isEnabled(id)) << "control " << id;
  }
}

TEST_F(FirstRun, OffersBootFloppies) {
  EXPECT_TRUE(window().isEnabled(IDC_MAKE_FLOPPY));
}

TEST_F(FirstRun, ListsNoDriveOfTheSystem) {
  EXPECT_EQ(routers().count(), 0);
}

TEST_F(FirstRun, ShowsNoProgress) {
  EXPECT_EQ(window().progress(IDC_PROGRESS), 0);
}

}  // namespace
}  // namespace omniset::test
