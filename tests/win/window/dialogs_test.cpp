// The help, the choosers, and the keys of the main window.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/win/window/window_test.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;

constexpr int kFileNameField = 0x47C;  // of the system's file chooser

class Dialogs : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    startWindow();
  }

  DrivenDialog openHelp() {
    window().click(IDC_SHOW_HELP);
    return window().awaitDialog("Help");
  }
};

TEST_F(Dialogs, TheHelpHoldsAllItsSections) {
  DrivenDialog help = openHelp();
  const std::string text = help.text(IDC_HELP_TEXT);
  for (const char* heading : {"Overview:\r\n", "Before you start:\r\n", "Installation methods:\r\n",
                              "For floppy boot:\r\n", "For PXE boot:\r\n",
                              "For local disk installation:\r\n", "Installation:\r\n"}) {
    EXPECT_THAT(text, HasSubstr(heading));
  }
  EXPECT_FALSE(help.isWritable(IDC_HELP_TEXT));
}

TEST_F(Dialogs, TheHelpClosesByItsButton) {
  DrivenDialog help = openHelp();
  EXPECT_EQ(help.text(IDC_HELP_CLOSE), "Close");
  help.click(IDC_HELP_CLOSE);
  help.awaitClosed();
  window().settle();
  EXPECT_TRUE(window().hasOnlyMainWindow());
  EXPECT_TRUE(IsWindowEnabled(window().handle()));
}

TEST_F(Dialogs, TheHelpClosesByItsCaptionAndByKeys) {
  DrivenDialog help = openHelp();
  help.close();
  help.awaitClosed();
  help = openHelp();
  help.press(IDC_HELP_CLOSE, VK_ESCAPE);
  help.awaitClosed();
  help = openHelp();
  help.press(IDC_HELP_CLOSE, VK_RETURN);
  help.awaitClosed();
  window().settle();
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(Dialogs, EscapeAndEnterDoNotCloseTheMainWindow) {
  for (const int id : {IDC_FOLDER, IDC_SETS, IDC_ROUTERS, IDC_PACKAGES}) {
    window().press(id, VK_ESCAPE);
    window().press(id, VK_RETURN);
  }
  window().settle();
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(Dialogs, EnterInTheFolderFieldStartsNoInstallation) {
  startTarget();
  selectReadyRouter();
  window().focus(IDC_FOLDER);
  window().press(IDC_FOLDER, VK_RETURN);
  window().settle();
  EXPECT_TRUE(window().hasOnlyMainWindow());
}

TEST_F(Dialogs, TheTabKeyReachesEveryControlThatCanBeUsed) {
  startTarget();
  selectReadyRouter();
  std::set<int> reached;
  HWND control = window().control(IDC_FOLDER);
  do {
    control = GetNextDlgTabItem(window().handle(), control, FALSE);
    reached.insert(GetDlgCtrlID(control));
  } while (control != window().control(IDC_FOLDER));
  for (const int id :
       {IDC_ROUTERS, IDC_NET_BOOTING, IDC_SHOW_HELP, IDC_INSTALL, IDC_KEEP_CONFIGURATION,
        IDC_ADDRESS, IDC_NETMASK, IDC_GATEWAY, IDC_BAUD_RATE, IDC_USE_SCRIPT, IDC_SETS,
        IDC_SAVE_SET, IDC_FOLDER, IDC_BROWSE, IDC_SELECT_ALL, IDC_SELECT_NONE, IDC_PACKAGES}) {
    EXPECT_EQ(reached.count(id), 1u) << "control " << id;
  }
}

TEST_F(Dialogs, AScriptIsChosenFromTheSystemsDialog) {
  writeBytes(path("chosen.rsc"), "/log info started\n");
  startTarget();
  selectReadyRouter();
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_CHOOSE_SCRIPT);
  window().click(IDC_CHOOSE_SCRIPT);
  DrivenDialog chooser = window().awaitDialog("Select script");
  chooser.paste(kFileNameField, path("chosen.rsc"));
  chooser.click(IDOK);
  chooser.awaitClosed();
  window().awaitText(IDC_SCRIPT_FILE, path("chosen.rsc"));
  EXPECT_THAT(window().process().outputLines(),
              ::testing::Contains("selected: " + path("chosen.rsc")));
}

TEST_F(Dialogs, AScriptChoiceThatIsCancelledChangesNothing) {
  startTarget();
  selectReadyRouter();
  window().click(IDC_USE_SCRIPT);
  window().awaitEnabled(IDC_SCRIPT_FILE);
  window().type(IDC_SCRIPT_FILE, "C:\\before.rsc");
  window().click(IDC_CHOOSE_SCRIPT);
  DrivenDialog chooser = window().awaitDialog("Select script");
  chooser.click(IDCANCEL);
  chooser.awaitClosed();
  window().settle();
  EXPECT_EQ(window().text(IDC_SCRIPT_FILE), "C:\\before.rsc");
}

// Wine's chooser finds a folder only if the time of its last access is as it was a moment before,
// and the first look into a folder changes that. A time to come is left as it is.
void settleAccessTime(const std::string& folder) {
  constexpr LONGLONG kHour = 36'000'000'000;  // in units of 100 ns
  const HANDLE handle =
      CreateFileA(folder.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  ULARGE_INTEGER time{};
  time.LowPart = now.dwLowDateTime;
  time.HighPart = now.dwHighDateTime;
  time.QuadPart += kHour;
  const FILETIME accessed{time.LowPart, time.HighPart};
  const BOOL done = SetFileTime(handle, nullptr, &accessed, nullptr);
  CloseHandle(handle);
  if (!done) throw WindowFault("the times of " + folder + " cannot be set");
}

class FolderChooser : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    writePackages(first_, samplePackages());
    writePackages(second_, {samplePackages().front()});
    for (const std::string& folder : {first_, second_, parent_}) settleAccessTime(folder);
    storeText("Package Path", first_);
    startWindow();
  }

  void TearDown() override {
    WindowTest::TearDown();
    std::filesystem::remove_all(parent_);
  }

  DrivenDialog openChooser() {
    window().click(IDC_BROWSE);
    return window().awaitDialog("Browse for Folder");
  }

  void awaitText(const DrivenDialog& chooser, const std::string& text) {
    waitUntil("the chooser says \"" + text + "\"", [&] {
      const Texts texts = chooser.allTexts();
      return std::find(texts.begin(), texts.end(), text) != texts.end();
    });
  }

  // Neighbours in the tree.
  const std::string parent_ = "C:\\package folders";
  const std::string first_ = parent_ + "\\first";
  const std::string second_ = parent_ + "\\second";
};

TEST_F(FolderChooser, StartsInThePresentFolderAndCountsItsPackages) {
  DrivenDialog chooser = openChooser();
  awaitText(chooser, "There are 4 package(s) in this directory");
  awaitText(chooser, "Select package directory:");
  EXPECT_THAT(window().process().outputLines(), ::testing::Contains("init path: " + first_));
}

TEST_F(FolderChooser, TakesOverTheFolderThatIsChosen) {
  DrivenDialog chooser = openChooser();
  awaitText(chooser, "There are 4 package(s) in this directory");
  const HWND tree = FindWindowExA(chooser.handle(), nullptr, "SysTreeView32", nullptr);
  chooser.press(GetDlgCtrlID(tree), VK_DOWN);
  awaitText(chooser, "There are 1 package(s) in this directory");
  chooser.press(GetDlgCtrlID(tree), VK_UP);
  awaitText(chooser, "There are 4 package(s) in this directory");
  chooser.press(GetDlgCtrlID(tree), VK_DOWN);
  awaitText(chooser, "There are 1 package(s) in this directory");
  chooser.click(IDOK);
  chooser.awaitClosed();
  window().awaitText(IDC_FOLDER, second_);
  packages().awaitCount(1);
}

TEST_F(FolderChooser, ThatIsCancelledChangesNothing) {
  DrivenDialog chooser = openChooser();
  awaitText(chooser, "There are 4 package(s) in this directory");
  chooser.click(IDCANCEL);
  chooser.awaitClosed();
  window().settle();
  EXPECT_EQ(window().text(IDC_FOLDER), first_);
  EXPECT_EQ(packages().count(), 4);
}

}  // namespace
}  // namespace omniset::test
