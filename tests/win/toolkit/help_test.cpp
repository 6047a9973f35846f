#include "ui/help.h"

#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "tests/win/toolkit/drive_modal.h"
#include "ui/help_text.h"

namespace omniset::test {

namespace {

void show(std::function<void(Driven<Help>&)> drive) {
  Driven<Help> dialog;
  dialog.drive = std::move(drive);
  dialog.show(nullptr);
  EXPECT_EQ(nullptr, dialog.handle());
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
    lines.push_back(text.substr(start, end - start));
  }
  EXPECT_EQ(text.size(), start) << "the last line has no end";
  return lines;
}

// The text below a heading, up to the next empty line.
std::string section(const std::string& heading) {
  const std::string text = helpText();
  const size_t start = text.find(heading + "\r\n");
  return start == std::string::npos ? "" : text.substr(start, text.find("\r\n\r\n", start) - start);
}

}  // namespace

TEST(HelpText, HasItsSectionsInOrder) {
  std::vector<std::string> headings;
  for (const std::string& line : linesOf(helpText())) {
    EXPECT_EQ(std::string::npos, line.find_first_of("\r\n"));
    if (line.ends_with(":")) headings.push_back(line);
  }
  EXPECT_EQ((std::vector<std::string>{
                "Overview:", "Before you start:", "Installation methods:", "For floppy boot:",
                "For PXE boot:", "For local disk installation:", "Installation:"}),
            headings);
}

TEST(HelpText, SaysWhatAnOperatorNeeds) {
  using testing::HasSubstr;
  EXPECT_THAT(section("Overview:"), HasSubstr("Kestrix"));
  EXPECT_THAT(section("Before you start:"), HasSubstr("one folder"));
  EXPECT_THAT(section("For floppy boot:"), HasSubstr("\"Make floppy\""));
  EXPECT_THAT(section("For floppy boot:"), HasSubstr("same Ethernet segment"));
  EXPECT_THAT(section("For PXE boot:"), HasSubstr("\"Net booting\""));
  EXPECT_THAT(section("For PXE boot:"), HasSubstr("same Ethernet segment"));
  EXPECT_THAT(section("For local disk installation:"), HasSubstr("NT4, 2000 and XP only"));
  EXPECT_THAT(section("For local disk installation:"), HasSubstr("32MB"));
  EXPECT_THAT(section("Installation:"), HasSubstr("30 seconds"));
  EXPECT_THAT(section("Installation:"), HasSubstr("\".bdl\""));
  EXPECT_THAT(section("Installation:"), HasSubstr("\"system\" is required"));
}

TEST(Help, ShowsTheWholeTextFromItsStartWithNothingSelected) {
  show([](auto& open) {
    const HWND text = open.control(IDC_HELP_TEXT);
    EXPECT_EQ(helpText(), open.text(IDC_HELP_TEXT));
    EXPECT_EQ(0, SendMessageA(text, EM_GETSEL, 0, 0));
    EXPECT_EQ(0, SendMessageA(text, EM_GETFIRSTVISIBLELINE, 0, 0));
    EXPECT_EQ(text, GetFocus());
    pressButton(open, IDC_HELP_CLOSE);
  });
}

TEST(Help, TextScrollsByTheKeyboard) {
  show([](auto& open) {
    const HWND text = open.control(IDC_HELP_TEXT);
    // The first one may only take the caret to the last line that is seen.
    SendMessageA(text, WM_KEYDOWN, VK_NEXT, 1);
    SendMessageA(text, WM_KEYDOWN, VK_NEXT, 1);
    EXPECT_GT(SendMessageA(text, EM_GETFIRSTVISIBLELINE, 0, 0), 3);
    pressButton(open, IDC_HELP_CLOSE);
  });
}

TEST(Help, ButtonEnterEscapeAndClosingEndIt) {
  show([](auto& open) { pressButton(open, IDC_HELP_CLOSE); });
  show([](auto& open) { pressKey(open.control(IDC_HELP_TEXT), VK_RETURN); });
  show([](auto& open) { pressKey(open.control(IDC_HELP_CLOSE), VK_RETURN); });
  show([](auto& open) { pressKey(open.control(IDC_HELP_TEXT), VK_ESCAPE); });
  show([](auto& open) { pressKey(open.control(IDC_HELP_CLOSE), VK_ESCAPE); });
  show([](auto& open) { PostMessageA(open.handle(), WM_SYSCOMMAND, SC_CLOSE, 0); });
}

}  // namespace omniset::test
