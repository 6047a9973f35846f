#include "ui/toolkit/deferred_exception.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/contract/raised_text.h"
#include "tests/win/toolkit/drive_modal.h"
#include "tests/win/toolkit/messages.h"
#include "tests/win/toolkit/test_ids.h"
#include "ui/toolkit/dialog.h"

namespace omniset::test {

namespace {

constexpr UINT kRaise = WM_APP + 1;
constexpr UINT kOpenInner = WM_APP + 2;

// Raises an exception on demand, or from its initialisation.
class RaisingDialog : public Dialog {
 public:
  INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value) override {
    if (message == raising) throw std::runtime_error("raised " + std::to_string(word));
    if (message == kOpenInner) {
      Driven<Dialog> inner;
      inner.drive = [this](auto&) { SendMessageA(handle(), kRaise, 3, 0); };
      inner.runModal(IDD_CONTROLS, handle());
      ++innerRunsPassed;
    }
    return Dialog::dialogProcedure(message, word, value);
  }

  UINT raising = kRaise;
  int innerRunsPassed = 0;
};

std::string rethrown() {
  return raisedText<std::runtime_error>([] { rethrowDeferredException(); });
}

}  // namespace

TEST(DeferredException, OfAProcedureIsRaisedOutsideAndOnce) {
  RaisingDialog dialog;
  dialog.create(IDD_CONTROLS);
  EXPECT_EQ("(nothing raised)", rethrown());
  EXPECT_EQ(0, SendMessageA(dialog.handle(), kRaise, 1, 0));
  EXPECT_EQ("raised 1", rethrown());
  EXPECT_EQ("(nothing raised)", rethrown());
}

TEST(DeferredException, FirstOfSeveralIsKept) {
  RaisingDialog dialog;
  dialog.create(IDD_CONTROLS);
  SendMessageA(dialog.handle(), kRaise, 1, 0);
  SendMessageA(dialog.handle(), kRaise, 2, 0);
  EXPECT_EQ("raised 1", rethrown());
  EXPECT_EQ("(nothing raised)", rethrown());
}

TEST(DeferredException, WakesTheMessageLoop) {
  pumpMessages();
  MSG message{};
  ASSERT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE));
  deferException(std::make_exception_ptr(std::runtime_error("x")));
  ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(WM_NULL, static_cast<int>(message.message));
  EXPECT_EQ(nullptr, message.hwnd);
  EXPECT_EQ("x", rethrown());
}

TEST(DeferredException, OfAnInitialisationComesOutOfTheCreation) {
  RaisingDialog dialog;
  dialog.raising = WM_INITDIALOG;
  EXPECT_TRUE(
      raisedText<std::runtime_error>([&] { dialog.create(IDD_CONTROLS); }).starts_with("raised "));
  EXPECT_EQ(nullptr, dialog.handle());
  EXPECT_EQ("(nothing raised)", rethrown());
}

TEST(DeferredException, OfAModalInitialisationEndsTheDialog) {
  RaisingDialog dialog;
  dialog.raising = WM_INITDIALOG;
  EXPECT_TRUE(raisedText<std::runtime_error>([&] {
                dialog.runModal(IDD_CONTROLS, nullptr);
              }).starts_with("raised "));
  EXPECT_EQ(nullptr, dialog.handle());
}

TEST(DeferredException, OfAModalDialogEndsIt) {
  Driven<RaisingDialog> dialog;
  dialog.drive = [](auto& open) { PostMessageA(open.handle(), kRaise, 5, 0); };
  EXPECT_EQ("raised 5",
            raisedText<std::runtime_error>([&] { dialog.runModal(IDD_CONTROLS, nullptr); }));
  EXPECT_EQ(nullptr, dialog.handle());
}

TEST(DeferredException, OfAnotherWindowEndsTheModalDialogToo) {
  RaisingDialog main;
  main.create(IDD_CONTROLS);
  Driven<Dialog> modal;
  modal.drive = [&](auto&) { PostMessageA(main.handle(), kRaise, 6, 0); };
  EXPECT_EQ("raised 6",
            raisedText<std::runtime_error>([&] { modal.runModal(IDD_CONTROLS, main.handle()); }));
  EXPECT_NE(nullptr, main.handle());
}

TEST(DeferredException, PassesThroughEveryModalDialogThatIsOpen) {
  Driven<RaisingDialog> outer;
  outer.drive = [](auto& open) { PostMessageA(open.handle(), kOpenInner, 0, 0); };
  EXPECT_EQ("raised 3",
            raisedText<std::runtime_error>([&] { outer.runModal(IDD_CONTROLS, nullptr); }));
  EXPECT_EQ(0, outer.innerRunsPassed);
  EXPECT_EQ("(nothing raised)", rethrown());
}

TEST(DeferredException, LeavesLaterModalDialogsAlone) {
  RaisingDialog dialog;
  dialog.create(IDD_CONTROLS);
  SendMessageA(dialog.handle(), kRaise, 1, 0);
  EXPECT_EQ("raised 1", rethrown());
  Driven<Dialog> modal;
  modal.drive = [](auto& open) { EndDialog(open.handle(), 9); };
  EXPECT_EQ(9, modal.runModal(IDD_CONTROLS, nullptr));
}

}  // namespace omniset::test
