#include "tests/win/driver/driven_dialog.h"

#include <commctrl.h>

#include <algorithm>

#include "tests/win/driver/messages.h"

namespace omniset::test {

namespace {

GUITHREADINFO threadState(HWND window) {
  GUITHREADINFO state{};
  state.cbSize = sizeof state;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state);
  return state;
}

BOOL CALLBACK appendChild(HWND child, LPARAM list) {
  reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
  return TRUE;
}

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// The Unicode message: the other one is not carried between processes everywhere.
std::string comboLine(HWND combo, WPARAM index) {
  const LRESULT length = ask(combo, CB_GETLBTEXTLEN, index);
  if (length == CB_ERR) throw WindowFault("a line of a list cannot be read");
  std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
  SendMessageW(combo, CB_GETLBTEXT, index, asParameter(wide.data()));
  std::string text;
  for (LRESULT i = 0; i < length; ++i) {
    text.push_back(static_cast<char>(wide[static_cast<std::size_t>(i)]));
  }
  return text;
}

}  // namespace

std::string DrivenDialog::caption() const {
  return windowText(window_);
}

std::vector<std::string> DrivenDialog::allTexts() const {
  std::vector<HWND> children;
  EnumChildWindows(window_, appendChild, asParameter(&children));
  std::vector<std::string> texts;
  for (const HWND child : children) texts.push_back(windowText(child));
  return texts;
}

HWND DrivenDialog::control(int id) const {
  const HWND found = GetDlgItem(window_, id);
  if (!found) throw WindowFault("there is no control " + std::to_string(id));
  return found;
}

// A program in the middle of changing its controls answers when it is done: what is read after the
// answer belongs together with what was read before.
bool DrivenDialog::isEnabled(int id) const {
  ask(window_, WM_NULL);
  return IsWindowEnabled(control(id));
}

bool DrivenDialog::isWritable(int id) const {
  return isEnabled(id) && !(GetWindowLongA(control(id), GWL_STYLE) & ES_READONLY);
}

std::string DrivenDialog::text(int id) const {
  return windowText(control(id));
}

bool DrivenDialog::isChecked(int id) const {
  return ask(control(id), BM_GETCHECK) == BST_CHECKED;
}

int DrivenDialog::progress(int id) const {
  return static_cast<int>(ask(control(id), PBM_GETPOS));
}

RECT DrivenDialog::place(int id) const {
  return placeOf(control(id));
}

RECT DrivenDialog::placeOf(HWND child) const {
  RECT place{};
  GetWindowRect(child, &place);
  POINT origin{0, 0};
  ClientToScreen(window_, &origin);
  OffsetRect(&place, -origin.x, -origin.y);
  return place;
}

void DrivenDialog::awaitText(int id, const std::string& expected, Milliseconds limit) const {
  waitUntil(
      "control " + std::to_string(id) + " shows " + quoted(expected),
      [&] { return text(id) == expected; }, [&] { return quoted(text(id)); }, limit);
}

void DrivenDialog::awaitEnabled(int id, bool expected) const {
  waitUntil("control " + std::to_string(id) + (expected ? " is enabled" : " is disabled"),
            [&] { return isEnabled(id) == expected; });
}

HWND DrivenDialog::requireEnabled(int id) const {
  const HWND found = control(id);
  if (!IsWindowVisible(found)) {
    throw WindowFault("control " + std::to_string(id) + " is not to be seen");
  }
  if (!IsWindowEnabled(window_)) throw WindowFault(quoted(caption()) + " waits for another dialog");
  if (!IsWindowEnabled(found)) {
    throw WindowFault("control " + std::to_string(id) + " is disabled");
  }
  return found;
}

void DrivenDialog::click(int id) {
  post(requireEnabled(id), BM_CLICK);
}

void DrivenDialog::focus(int id) {
  const HWND wanted = requireEnabled(id);
  post(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(wanted), TRUE);
  awaitFocus(id);
}

bool DrivenDialog::hasFocus(int id) const {
  const HWND wanted = control(id);
  const HWND focused = threadState(window_).hwndFocus;
  return focused == wanted || IsChild(wanted, focused);
}

// When a box closes, a busy screen without a window manager may leave the program in the
// background.
void DrivenDialog::awaitFocus(int id) const {
  waitUntil("control " + std::to_string(id) + " has the focus", [&] {
    if (!threadState(window_).hwndActive) SetForegroundWindow(window_);
    return hasFocus(id);
  });
}

void DrivenDialog::press(int id, int virtualKey) {
  const HWND wanted = control(id);
  const auto key = static_cast<WPARAM>(virtualKey);
  const LPARAM scanCode = static_cast<LPARAM>(MapVirtualKeyA(static_cast<UINT>(virtualKey), 0))
                          << 16;
  post(wanted, WM_KEYDOWN, key, scanCode | 1);
  // The key may have closed the dialog already.
  PostMessageA(wanted, WM_KEYUP, key, scanCode | static_cast<LPARAM>(0xC0000001));
}

void DrivenDialog::type(int id, const std::string& text) {
  if (!isWritable(id)) throw WindowFault("field " + std::to_string(id) + " takes no text");
  focus(id);
  const HWND field = control(id);
  ask(field, EM_SETSEL, 0, -1);
  post(field, WM_CHAR, '\b', 1);
  for (const char c : text) post(field, WM_CHAR, static_cast<unsigned char>(c), 1);
  awaitText(id, text);
}

void DrivenDialog::paste(int id, const std::string& text) {
  if (!isWritable(id)) throw WindowFault("field " + std::to_string(id) + " takes no text");
  focus(id);
  setWindowText(control(id), text);
  awaitText(id, text);
}

std::vector<std::string> DrivenDialog::lines(int combo) const {
  const HWND list = control(combo);
  const auto count = static_cast<WPARAM>(ask(list, CB_GETCOUNT));
  std::vector<std::string> lines;
  for (WPARAM i = 0; i < count; ++i) lines.push_back(comboLine(list, i));
  return lines;
}

std::string DrivenDialog::chosenLine(int combo) const {
  const LRESULT index = ask(control(combo), CB_GETCURSEL);
  return index == CB_ERR ? std::string() : comboLine(control(combo), static_cast<WPARAM>(index));
}

void DrivenDialog::choose(int combo, const std::string& line) {
  const HWND list = requireEnabled(combo);
  const std::vector<std::string> all = lines(combo);
  const auto found = std::find(all.begin(), all.end(), line);
  if (found == all.end()) throw WindowFault("there is no line " + quoted(line));
  ask(list, CB_SETCURSEL, static_cast<WPARAM>(found - all.begin()));
  ask(window_, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
}

void DrivenDialog::close() {
  post(window_, WM_SYSCOMMAND, SC_CLOSE);
}

void DrivenDialog::awaitClosed() const {
  waitUntil("the dialog is closed", [this] { return !isOpen(); });
}

}  // namespace omniset::test
