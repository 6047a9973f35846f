#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/win/toolkit/test_ids.h"
#include "ui/toolkit/dialog.h"

namespace omniset::test {

namespace {

// Counts what its edit tells it.
class ControlsDialog : public Dialog {
 public:
  ControlsDialog() { create(IDD_CONTROLS); }

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override {
    if (message == WM_COMMAND && word == MAKEWPARAM(IDC_TEST_EDIT, EN_CHANGE)) ++edits;
    return Dialog::dialogProcedure(message, word, value);
  }

  int edits = 0;
};

}  // namespace

TEST(DialogControls, TextOfAnyLengthIsSetAndRead) {
  ControlsDialog dialog;
  EXPECT_EQ("", dialog.text(IDC_TEST_EDIT));
  for (const std::string& text : {std::string("x"), std::string(5000, 'y'), std::string()}) {
    dialog.setText(IDC_TEST_EDIT, text);
    EXPECT_EQ(text, dialog.text(IDC_TEST_EDIT));
  }
  EXPECT_EQ("Button", dialog.text(IDC_TEST_BUTTON));
}

TEST(DialogControls, SameTextTouchesNothing) {
  ControlsDialog dialog;
  dialog.setText(IDC_TEST_EDIT, "typed");
  SendMessageA(dialog.control(IDC_TEST_EDIT), EM_SETSEL, 2, 3);
  const int editsBefore = dialog.edits;
  EXPECT_EQ(1, editsBefore);
  dialog.setText(IDC_TEST_EDIT, "typed");
  EXPECT_EQ(editsBefore, dialog.edits);
  EXPECT_EQ(MAKELONG(2, 3), SendMessageA(dialog.control(IDC_TEST_EDIT), EM_GETSEL, 0, 0));
}

TEST(DialogControls, CheckBoxIsSetAndRead) {
  ControlsDialog dialog;
  EXPECT_FALSE(dialog.isChecked(IDC_TEST_CHECK));
  dialog.setChecked(IDC_TEST_CHECK, true);
  EXPECT_TRUE(dialog.isChecked(IDC_TEST_CHECK));
  EXPECT_EQ(BST_CHECKED, SendMessageA(dialog.control(IDC_TEST_CHECK), BM_GETCHECK, 0, 0));
  dialog.setChecked(IDC_TEST_CHECK, false);
  EXPECT_FALSE(dialog.isChecked(IDC_TEST_CHECK));
}

TEST(DialogControls, ControlIsEnabledAndDisabled) {
  ControlsDialog dialog;
  EXPECT_TRUE(dialog.isEnabled(IDC_TEST_BUTTON));
  dialog.enable(IDC_TEST_BUTTON, false);
  EXPECT_FALSE(dialog.isEnabled(IDC_TEST_BUTTON));
  EXPECT_FALSE(IsWindowEnabled(dialog.control(IDC_TEST_BUTTON)));
  dialog.enable(IDC_TEST_BUTTON, true);
  EXPECT_TRUE(dialog.isEnabled(IDC_TEST_BUTTON));
}

TEST(DialogControls, ReadOnlyEditTakesNoTypingButTexts) {
  ControlsDialog dialog;
  EXPECT_FALSE(dialog.isReadOnly(IDC_TEST_EDIT));
  dialog.setReadOnly(IDC_TEST_EDIT, true);
  EXPECT_TRUE(dialog.isReadOnly(IDC_TEST_EDIT));
  SendMessageA(dialog.control(IDC_TEST_EDIT), WM_CHAR, 'a', 1);
  EXPECT_EQ("", dialog.text(IDC_TEST_EDIT));
  dialog.setText(IDC_TEST_EDIT, "shown");
  EXPECT_EQ("shown", dialog.text(IDC_TEST_EDIT));
  dialog.setReadOnly(IDC_TEST_EDIT, false);
  SendMessageA(dialog.control(IDC_TEST_EDIT), WM_CHAR, 'a', 1);
  EXPECT_EQ("ashown", dialog.text(IDC_TEST_EDIT));
}

TEST(DialogControls, ComboKeepsTheOrderOfItsLines) {
  ControlsDialog dialog;
  EXPECT_EQ(0, dialog.addLine(IDC_TEST_COMBO, "2400"));
  EXPECT_EQ(1, dialog.addLine(IDC_TEST_COMBO, "110"));
  EXPECT_EQ(2, dialog.addLine(IDC_TEST_COMBO, std::string(1000, 'z')));
  EXPECT_EQ(3, dialog.lineCount(IDC_TEST_COMBO));
  EXPECT_EQ("2400", dialog.lineText(IDC_TEST_COMBO, 0));
  EXPECT_EQ(std::string(1000, 'z'), dialog.lineText(IDC_TEST_COMBO, 2));
  EXPECT_EQ("", dialog.lineText(IDC_TEST_COMBO, 3));
  EXPECT_EQ("", dialog.lineText(IDC_TEST_COMBO, -1));
  dialog.deleteLine(IDC_TEST_COMBO, 0);
  EXPECT_EQ(2, dialog.lineCount(IDC_TEST_COMBO));
  EXPECT_EQ("110", dialog.lineText(IDC_TEST_COMBO, 0));
}

TEST(DialogControls, LettersBeyondAsciiComeBackFromACombo) {
  ControlsDialog dialog;
  dialog.addLine(IDC_TEST_COMBO, "B\xFCro");
  EXPECT_EQ("B\xFCro", dialog.lineText(IDC_TEST_COMBO, 0));
  EXPECT_EQ(0, dialog.findLine(IDC_TEST_COMBO, "B\xFCro"));
}

TEST(DialogControls, SortedComboTellsWhereALineCame) {
  ControlsDialog dialog;
  EXPECT_EQ(0, dialog.addLine(IDC_TEST_SORTED, "beta"));
  EXPECT_EQ(0, dialog.addLine(IDC_TEST_SORTED, "alpha"));
  EXPECT_EQ(2, dialog.addLine(IDC_TEST_SORTED, "gamma"));
}

TEST(DialogControls, LineIsSelectedAndUnselected) {
  ControlsDialog dialog;
  dialog.addLine(IDC_TEST_COMBO, "one");
  dialog.addLine(IDC_TEST_COMBO, "two");
  EXPECT_EQ(-1, dialog.selectedLine(IDC_TEST_COMBO));
  dialog.selectLine(IDC_TEST_COMBO, 1);
  EXPECT_EQ(1, dialog.selectedLine(IDC_TEST_COMBO));
  EXPECT_EQ("two", dialog.text(IDC_TEST_COMBO));
  dialog.selectLine(IDC_TEST_COMBO, -1);
  EXPECT_EQ(-1, dialog.selectedLine(IDC_TEST_COMBO));
  EXPECT_EQ("", dialog.text(IDC_TEST_COMBO));
}

TEST(DialogControls, LineIsFoundByTheSameTextToTheLetter) {
  ControlsDialog dialog;
  dialog.addLine(IDC_TEST_COMBO, "Home router");
  dialog.addLine(IDC_TEST_COMBO, "home");
  dialog.addLine(IDC_TEST_COMBO, "Home");
  EXPECT_EQ(2, dialog.findLine(IDC_TEST_COMBO, "Home"));
  EXPECT_EQ(1, dialog.findLine(IDC_TEST_COMBO, "home"));
  EXPECT_EQ(-1, dialog.findLine(IDC_TEST_COMBO, "HOME"));
  EXPECT_EQ(-1, dialog.findLine(IDC_TEST_COMBO, "Home "));
  EXPECT_EQ(-1, dialog.findLine(IDC_TEST_COMBO, ""));
}

TEST(DialogControls, ProgressStaysWithinItsRange) {
  ControlsDialog dialog;
  dialog.setProgressRange(IDC_TEST_PROGRESS, 0, 50);
  EXPECT_EQ(0, dialog.progress(IDC_TEST_PROGRESS));
  dialog.setProgress(IDC_TEST_PROGRESS, 30);
  EXPECT_EQ(30, dialog.progress(IDC_TEST_PROGRESS));
  dialog.setProgress(IDC_TEST_PROGRESS, 70);
  EXPECT_EQ(50, dialog.progress(IDC_TEST_PROGRESS));
  dialog.setProgress(IDC_TEST_PROGRESS, 0);
  EXPECT_EQ(0, dialog.progress(IDC_TEST_PROGRESS));
}

}  // namespace omniset::test
