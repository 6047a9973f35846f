#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "tests/win/toolkit/template_checks.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/window_text.h"

namespace omniset::test {

TEST(SetNameTemplate, HasExactlyItsControls) {
  Dialog dialog;
  dialog.create(IDD_SET_NAME);
  EXPECT_EQ("Save set", windowText(dialog.handle()));
  expectSizeAndFont(dialog, 200, 61);
  expectControls(dialog,
                 {{1000, "Edit", "", ES_AUTOHSCROLL},
                  {1001, "Button", "OK", BS_DEFPUSHBUTTON},
                  {1024, "Button", "Cancel", BS_PUSHBUTTON}},
                 {"Save package set as:"});
  expectNoTextClipped(dialog);
  expectNothingOverlaps(dialog, 0);
  EXPECT_EQ((std::vector<int>{1000, 1001, 1024}), tabOrder(dialog));
}

TEST(MakerTemplate, HasExactlyItsControls) {
  Dialog dialog;
  dialog.create(IDD_MAKER);
  EXPECT_EQ("Make Installation Floppy", windowText(dialog.handle()));
  expectSizeAndFont(dialog, 270, 103);
  expectControls(dialog,
                 {{1000, "Static",
                   "This will make a floppy disc needed for Veltrona router network installation. "
                   "To do this select image file, insert non write protected 1.44MB floppy disc "
                   "without any bad sectors in drive A: and press start.",
                   SS_CENTER},
                  {1003, "Edit", "", ES_AUTOHSCROLL, ES_NUMBER},
                  {1001, "Static", "Status", SS_LEFT},
                  {1005, "msctls_progress32", "", 0},
                  {1006, "Button", "Start", BS_DEFPUSHBUTTON},
                  {1007, "Button", "Cancel", BS_PUSHBUTTON},
                  {1008, "Button", "Done", BS_PUSHBUTTON}},
                 {"Label:"});
  expectNoTextClipped(dialog);
  expectNothingOverlaps(dialog, 0);
  EXPECT_EQ((std::vector<int>{1003, 1006, 1007, 1008}), tabOrder(dialog));
}

TEST(NetBootingTemplate, HasExactlyItsControls) {
  Dialog dialog;
  dialog.create(IDD_NET_BOOTING);
  EXPECT_EQ("Network Booting Settings", windowText(dialog.handle()));
  expectSizeAndFont(dialog, 270, 91);
  expectControls(dialog,
                 {{1032, "Button", "Boot Server enabled", BS_AUTOCHECKBOX},
                  {1033, "Edit", "", ES_AUTOHSCROLL, ES_NUMBER},
                  {1001, "Button", "OK", BS_DEFPUSHBUTTON},
                  {1024, "Button", "Cancel", BS_PUSHBUTTON}},
                 {"There you can set parameters for PXE (Pre-boot eXecution Environment) and "
                  "Etherboot server that can boot your router over network",
                  "Client IP address:"});
  expectNoTextClipped(dialog);
  expectNothingOverlaps(dialog, 0);
  EXPECT_EQ((std::vector<int>{1032, 1033, 1001, 1024}), tabOrder(dialog));
}

TEST(HelpTemplate, HasExactlyItsControls) {
  Dialog dialog;
  dialog.create(IDD_HELP);
  EXPECT_EQ("Help", windowText(dialog.handle()));
  expectSizeAndFont(dialog, 294, 181);
  expectControls(dialog,
                 {{1030, "Edit", "", ES_MULTILINE | ES_READONLY | WS_VSCROLL, WS_HSCROLL},
                  {1031, "Button", "Close", BS_DEFPUSHBUTTON}},
                 {});
  expectNoTextClipped(dialog);
  expectNothingOverlaps(dialog, 0);
  EXPECT_EQ((std::vector<int>{1030, 1031}), tabOrder(dialog));
}

}  // namespace omniset::test
