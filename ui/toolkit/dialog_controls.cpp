// The helpers of a dialog for its controls.
#include <windows.h>
// After windows.h, whose types it uses.
#include <commctrl.h>

#include "core/error.h"
#include "core/format_text.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/window_text.h"

namespace omniset {

namespace {

// In the system's code page, as the other calls give their texts.
std::string narrowText(const std::wstring& wide) {
  const int length = static_cast<int>(wide.size());
  const int needed =
      WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<size_t>(needed), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), length, narrow.data(), needed, nullptr, nullptr);
  return narrow;
}

}  // namespace

HWND Dialog::control(int id) const {
  const HWND found = GetDlgItem(handle(), id);
  if (found == nullptr) throw Error(formatText("GetDlgItem (%d)", id));
  return found;
}

LRESULT Dialog::send(int id, UINT message, WPARAM word, LPARAM value) const {
  return SendMessageA(control(id), message, word, value);
}

std::string Dialog::text(int id) const {
  return windowText(control(id));
}

void Dialog::setText(int id, const std::string& wanted) {
  if (text(id) != wanted) SetWindowTextA(control(id), wanted.c_str());
}

bool Dialog::isChecked(int id) const {
  return send(id, BM_GETCHECK) == BST_CHECKED;
}

void Dialog::setChecked(int id, bool checked) {
  if (isChecked(id) != checked) send(id, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED);
}

bool Dialog::isEnabled(int id) const {
  return IsWindowEnabled(control(id)) != FALSE;
}

void Dialog::enable(int id, bool enabled) {
  if (isEnabled(id) != enabled) EnableWindow(control(id), enabled);
}

bool Dialog::isReadOnly(int id) const {
  return (GetWindowLongPtrA(control(id), GWL_STYLE) & ES_READONLY) != 0;
}

void Dialog::setReadOnly(int id, bool readOnly) {
  if (isReadOnly(id) != readOnly) send(id, EM_SETREADONLY, readOnly);
}

int Dialog::addLine(int id, const std::string& text) {
  return static_cast<int>(send(id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

int Dialog::lineCount(int id) const {
  return static_cast<int>(send(id, CB_GETCOUNT));
}

std::string Dialog::lineText(int id, int line) const {
  // By the wide calls: the conversion for the others overruns its room under Wine when a line
  // is longer than 511 characters.
  const HWND combo = control(id);
  const auto index = static_cast<WPARAM>(line);
  const LRESULT length = line < 0 ? CB_ERR : SendMessageW(combo, CB_GETLBTEXTLEN, index, 0);
  if (length <= 0) return {};
  std::wstring wide(static_cast<size_t>(length) + 1, L'\0');
  const LRESULT copied =
      SendMessageW(combo, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(wide.data()));
  wide.resize(copied > 0 ? static_cast<size_t>(copied) : 0);
  return narrowText(wide);
}

int Dialog::findLine(int id, const std::string& text) const {
  // The system's own search takes "Home" for "home".
  const int count = lineCount(id);
  for (int line = 0; line < count; ++line) {
    if (lineText(id, line) == text) return line;
  }
  return -1;
}

void Dialog::selectLine(int id, int line) {
  if (selectedLine(id) != line) send(id, CB_SETCURSEL, static_cast<WPARAM>(line));
}

int Dialog::selectedLine(int id) const {
  return static_cast<int>(send(id, CB_GETCURSEL));
}

void Dialog::deleteLine(int id, int line) {
  send(id, CB_DELETESTRING, static_cast<WPARAM>(line));
}

void Dialog::setProgressRange(int id, int low, int high) {
  send(id, PBM_SETRANGE32, static_cast<WPARAM>(low), high);
}

void Dialog::setProgress(int id, int position) {
  if (progress(id) != position) send(id, PBM_SETPOS, static_cast<WPARAM>(position));
}

int Dialog::progress(int id) const {
  return static_cast<int>(send(id, PBM_GETPOS));
}

}  // namespace omniset
