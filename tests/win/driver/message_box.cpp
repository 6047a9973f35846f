#include "tests/win/driver/message_box.h"

#include <algorithm>

#include "tests/win/driver/messages.h"

namespace omniset::test {

namespace {

constexpr int kTextControl = 0xFFFF;

std::string withoutMark(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '&'), text.end());
  return text;
}

// Message boxes keep buttons that they do not need hidden.
std::vector<HWND> shownButtons(HWND box) {
  std::vector<HWND> buttons;
  HWND button = nullptr;
  while ((button = FindWindowExA(box, button, "Button", nullptr)) != nullptr) {
    if (IsWindowVisible(button)) buttons.push_back(button);
  }
  std::sort(buttons.begin(), buttons.end(), [](HWND a, HWND b) {
    RECT left{};
    RECT right{};
    GetWindowRect(a, &left);
    GetWindowRect(b, &right);
    return left.left < right.left;
  });
  return buttons;
}

}  // namespace

std::string DrivenMessageBox::caption() const {
  return windowText(box_);
}

std::string DrivenMessageBox::text() const {
  const HWND label = GetDlgItem(box_, kTextControl);
  if (!label) throw WindowFault("the box \"" + caption() + "\" holds no text");
  return windowText(label);
}

std::vector<std::string> DrivenMessageBox::buttons() const {
  std::vector<std::string> texts;
  for (const HWND button : shownButtons(box_)) texts.push_back(withoutMark(windowText(button)));
  return texts;
}

void DrivenMessageBox::answer(const std::string& button) {
  for (const HWND each : shownButtons(box_)) {
    if (withoutMark(windowText(each)) != button) continue;
    post(each, BM_CLICK);
    waitUntil("the box closes", [this] { return !IsWindow(box_) || !process_->isRunning(); });
    return;
  }
  throw WindowFault("the box \"" + caption() + "\" has no button \"" + button + "\"");
}

}  // namespace omniset::test
