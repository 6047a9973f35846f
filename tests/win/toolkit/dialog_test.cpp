#include "ui/toolkit/dialog.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/win/toolkit/drive_modal.h"
#include "tests/win/toolkit/test_ids.h"
#include "ui/static_text.h"

namespace omniset::test {

namespace {

class WatchedDialog : public Dialog {
 public:
  explicit WatchedDialog(std::vector<UINT>& seen) : seen_(seen) {}

  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override {
    seen_.push_back(message);
    if (message == WM_INITDIALOG) handleAtStart = handle();
    return Dialog::dialogProcedure(message, word, value);
  }

  HWND handleAtStart = nullptr;

 private:
  std::vector<UINT>& seen_;
};

constexpr int kNoSuchTemplate = 999;

}  // namespace

TEST(Dialog, ObjectGetsTheMessagesFromTheInitialisationOn) {
  std::vector<UINT> seen;
  WatchedDialog dialog(seen);
  dialog.create(IDD_CONTROLS);
  ASSERT_NE(nullptr, dialog.handle());
  EXPECT_EQ(dialog.handle(), dialog.handleAtStart);
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(WM_INITDIALOG, seen.front());
  SendMessageA(dialog.handle(), WM_APP, 0, 0);
  EXPECT_EQ(WM_APP, seen.back());
}

TEST(Dialog, DefaultAnswersTheInitialisationOnly) {
  Dialog dialog;
  EXPECT_EQ(TRUE, dialog.dialogProcedure(WM_INITDIALOG, 0, 0));
  EXPECT_EQ(FALSE, dialog.dialogProcedure(WM_COMMAND, IDOK, 0));
  EXPECT_EQ(FALSE, dialog.dialogProcedure(WM_CLOSE, 0, 0));
}

TEST(Dialog, HandleIsForgottenWhenTheNativeWindowEnds) {
  std::vector<UINT> seen;
  WatchedDialog dialog(seen);
  dialog.create(IDD_CONTROLS);
  DestroyWindow(dialog.handle());
  EXPECT_EQ(nullptr, dialog.handle());
}

TEST(Dialog, DestructorEndsTheNativeWindowWithoutAMessageToTheObject) {
  std::vector<UINT> seen;
  auto dialog = std::make_unique<WatchedDialog>(seen);
  dialog->create(IDD_CONTROLS);
  const HWND handle = dialog->handle();
  seen.clear();
  dialog.reset();
  EXPECT_FALSE(IsWindow(handle));
  EXPECT_TRUE(seen.empty());
}

TEST(Dialog, MissingTemplateOrControlClassIsAFailedCreation) {
  Dialog dialog;
  for (const int id : {kNoSuchTemplate, IDD_UNKNOWN_CLASS}) {
    EXPECT_TRUE(raisedText<Error>([&] { dialog.create(id); }).starts_with("CreateDialog: "));
    EXPECT_TRUE(
        raisedText<Error>([&] { dialog.runModal(id, nullptr); }).starts_with("CreateDialog: "));
    EXPECT_EQ(nullptr, dialog.handle());
  }
}

TEST(Dialog, ParentThatIsNoWindowIsAFailedCreation) {
  Dialog dialog;
  const HWND gone = reinterpret_cast<HWND>(static_cast<UINT_PTR>(0x7FFE));
  EXPECT_TRUE(raisedText<Error>([&] {
                dialog.runModal(IDD_CONTROLS, gone);
              }).starts_with("CreateDialog: "));
}

TEST(Dialog, ModalDialogReturnsTheResultThatItWasEndedWith) {
  for (const INT_PTR result : {INT_PTR{IDOK}, INT_PTR{0}, INT_PTR{-1}}) {
    Driven<Dialog> dialog;
    dialog.drive = [result](auto& open) { EndDialog(open.handle(), result); };
    EXPECT_EQ(result, dialog.runModal(IDD_CONTROLS, nullptr));
    EXPECT_EQ(nullptr, dialog.handle());
  }
}

TEST(Dialog, ModalDialogCanRunAgain) {
  Driven<Dialog> dialog;
  int runs = 0;
  dialog.drive = [&](auto& open) { EndDialog(open.handle(), ++runs); };
  EXPECT_EQ(1, dialog.runModal(IDD_CONTROLS, nullptr));
  EXPECT_EQ(2, dialog.runModal(IDD_CONTROLS, nullptr));
}

TEST(Dialog, UnknownControlIsNamedByItsNumber) {
  Dialog dialog;
  dialog.create(IDD_CONTROLS);
  EXPECT_EQ(GetDlgItem(dialog.handle(), IDC_TEST_EDIT), dialog.control(IDC_TEST_EDIT));
  EXPECT_TRUE(raisedText<Error>([&] { dialog.control(1234); }).starts_with("GetDlgItem (1234): "));
  EXPECT_TRUE(
      raisedText<Error>([&] { dialog.setText(1235, "x"); }).starts_with("GetDlgItem (1235): "));
}

TEST(StaticText, ShowsItsTemplateAndLeavesTheRestToTheSystem) {
  StaticText dialog;
  dialog.create(IDD_CONTROLS);
  EXPECT_EQ("Static", dialog.text(IDC_TEST_STATIC));
  EXPECT_EQ(FALSE, dialog.dialogProcedure(WM_COMMAND, IDOK, 0));
}

}  // namespace omniset::test
