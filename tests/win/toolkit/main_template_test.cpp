#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, whose types it uses.
#include <commctrl.h>

#include "resources/resource_ids.h"
#include "tests/win/toolkit/template_checks.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/window_text.h"

namespace omniset::test {

namespace {

class MainTemplate : public testing::Test {
 protected:
  MainTemplate() { dialog.create(IDD_MAIN); }

  Dialog dialog;
};

const std::vector<ExpectedControl> kControls = {
    {1029, "Button", "Routers/Drives", BS_GROUPBOX},
    {1002, "SysListView32", "", LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS},
    {1025, "Static", "Installing...", SS_NOPREFIX},
    {1022, "msctls_progress32", "", 0},
    {1000, "Button", "Make floppy", BS_PUSHBUTTON, WS_DISABLED},
    {1026, "Button", "Net booting", BS_PUSHBUTTON, WS_DISABLED},
    {1023, "Button", "Install", BS_DEFPUSHBUTTON, WS_DISABLED},
    {1024, "Button", "Cancel", BS_PUSHBUTTON, WS_DISABLED},
    {1027, "Button", "Help", BS_PUSHBUTTON, WS_DISABLED},
    {1028, "Button", "Keep old configuration", BS_AUTOCHECKBOX},
    {1006, "Edit", "", 0, ES_NUMBER},
    {1005, "Edit", "", ES_NUMBER},
    {1008, "Edit", "", 0, ES_NUMBER},
    {1030, "ComboBox", "", CBS_DROPDOWNLIST, CBS_SORT},
    {1032, "Button", "Configure script:", BS_AUTOCHECKBOX},
    {1033, "Edit", "", ES_AUTOHSCROLL},
    {1034, "Button", "...", BS_PUSHBUTTON},
    {1017, "Button", "Packages", BS_GROUPBOX},
    {1010, "ComboBox", "", CBS_DROPDOWNLIST | CBS_SORT},
    {1011, "Button", "Save set", BS_PUSHBUTTON, WS_DISABLED},
    {1012, "Button", "Delete set", BS_PUSHBUTTON, WS_DISABLED},
    {1003, "Edit", "", ES_AUTOHSCROLL},
    {1004, "Button", "Browse...", BS_PUSHBUTTON, WS_DISABLED},
    {1014, "Button", "Select all", BS_PUSHBUTTON | WS_DISABLED},
    {1015, "Button", "Select none", BS_PUSHBUTTON | WS_DISABLED},
    {1001, "SysListView32", "", LVS_REPORT | LVS_SHOWSELALWAYS, LVS_SINGLESEL},
};

}  // namespace

TEST_F(MainTemplate, HasExactlyItsControls) {
  expectControls(dialog, kControls,
                 {"IP address:", "/", "Gateway:", "Baud rate:", "Sets:", "From:"});
}

TEST_F(MainTemplate, IsTheHiddenWindowOfItsSizeAndFont) {
  EXPECT_EQ("Veltrona Router Installer v1.8", windowText(dialog.handle()));
  expectSizeAndFont(dialog, 406, 252);
  const auto style = GetWindowLongPtrA(dialog.handle(), GWL_STYLE);
  const LONG_PTR wanted = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX;
  EXPECT_EQ(wanted, style & wanted);
  EXPECT_EQ(0, style & (WS_VISIBLE | WS_MAXIMIZEBOX | WS_CHILD));
}

TEST_F(MainTemplate, ShowsEveryTextWhole) {
  expectNoTextClipped(dialog);
  // The label of an entry that waits.
  dialog.setText(IDC_INSTALL, "Reboot");
  expectNoTextClipped(dialog);
}

TEST_F(MainTemplate, LeavesItsLowerEdgeToTheStatusBar) {
  expectNothingOverlaps(dialog, 14);
}

TEST_F(MainTemplate, TabFollowsTheReadingOrder) {
  dialog.enable(IDC_SELECT_ALL, true);
  dialog.enable(IDC_SELECT_NONE, true);
  EXPECT_EQ((std::vector<int>{1002, 1028, 1006, 1005, 1008, 1030, 1032, 1033, 1034, 1023, 1024,
                              1000, 1026, 1027, 1010, 1011, 1012, 1014, 1015, 1003, 1004, 1001}),
            tabOrder(dialog));
}

TEST_F(MainTemplate, EnterMeansInstall) {
  EXPECT_EQ(MAKELONG(IDC_INSTALL, DC_HASDEFID), SendMessageA(dialog.handle(), DM_GETDEFID, 0, 0));
}

TEST_F(MainTemplate, EveryBaudRateFitsItsList) {
  dialog.addLine(IDC_BAUD_RATE, "921600");
  RECT place{};
  GetClientRect(dialog.control(IDC_BAUD_RATE), &place);
  const HDC canvas = GetDC(dialog.control(IDC_BAUD_RATE));
  SelectObject(canvas, reinterpret_cast<HFONT>(
                           SendMessageA(dialog.control(IDC_BAUD_RATE), WM_GETFONT, 0, 0)));
  SIZE size{};
  ASSERT_TRUE(GetTextExtentPoint32A(canvas, "921600", 6, &size));
  ReleaseDC(dialog.control(IDC_BAUD_RATE), canvas);
  EXPECT_LE(size.cx + GetSystemMetrics(SM_CXVSCROLL) + 8, place.right);
}

}  // namespace omniset::test
