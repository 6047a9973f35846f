#include "ui/set_name.h"

#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "tests/win/toolkit/drive_modal.h"

namespace omniset::test {

namespace {

struct Outcome {
  bool accepted;
  std::string name;
};

Outcome ask(const std::string& proposal, std::function<void(Driven<SetName>&)> drive) {
  Driven<SetName> dialog(proposal);
  dialog.drive = std::move(drive);
  const bool accepted = dialog.ask(nullptr);
  return {accepted, dialog.name()};
}

}  // namespace

TEST(SetName, ShowsTheProposalReadyToBeOverwritten) {
  ask("Office", [](auto& open) {
    EXPECT_EQ("Office", open.text(IDC_SET_NAME));
    EXPECT_EQ(open.control(IDC_SET_NAME), GetFocus());
    EXPECT_EQ(MAKELONG(0, 6), SendMessageA(open.control(IDC_SET_NAME), EM_GETSEL, 0, 0));
    pressButton(open, IDC_SET_NAME_CANCEL);
  });
}

TEST(SetName, OkTakesWhatWasTyped) {
  const Outcome outcome = ask("Office", [](auto& open) {
    typeText(open.control(IDC_SET_NAME), "Branch 7");
    pressButton(open, IDC_SET_NAME_OK);
  });
  EXPECT_TRUE(outcome.accepted);
  EXPECT_EQ("Branch 7", outcome.name);
}

TEST(SetName, EnterIsOk) {
  const Outcome outcome = ask("Office", [](auto& open) {
    typeText(open.control(IDC_SET_NAME), "Branch");
    pressKey(open.control(IDC_SET_NAME), VK_RETURN);
  });
  EXPECT_TRUE(outcome.accepted);
  EXPECT_EQ("Branch", outcome.name);
}

TEST(SetName, LongAndEmptyNamesAreGivenBackAsTyped) {
  for (const std::string& name : {std::string(), std::string(600, 'n')}) {
    const Outcome outcome = ask("Office", [&](auto& open) {
      open.setText(IDC_SET_NAME, name);
      pressButton(open, IDC_SET_NAME_OK);
    });
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(name, outcome.name);
  }
}

TEST(SetName, CancelEscapeAndClosingGiveNoResult) {
  const std::function<void(Driven<SetName>&)> ways[] = {
      [](auto& open) { pressButton(open, IDC_SET_NAME_CANCEL); },
      [](auto& open) { pressKey(open.control(IDC_SET_NAME), VK_ESCAPE); },
      [](auto& open) { PostMessageA(open.handle(), WM_SYSCOMMAND, SC_CLOSE, 0); },
  };
  for (const auto& way : ways) {
    const Outcome outcome = ask("Office", [&](auto& open) {
      open.setText(IDC_SET_NAME, "Typed");
      way(open);
    });
    EXPECT_FALSE(outcome.accepted);
    EXPECT_EQ("Office", outcome.name);
  }
}

}  // namespace omniset::test
