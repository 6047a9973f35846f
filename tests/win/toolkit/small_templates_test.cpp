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
