#include "tests/win/driver/messages.h"

#include "tests/win/driver/waiting.h"

namespace omniset::test {

namespace {
constexpr UINT kAnswerLimit = 15'000;  // ms
}

LRESULT ask(HWND window, UINT message, WPARAM word, LPARAM value) {
  DWORD_PTR result = 0;
  SetLastError(ERROR_SUCCESS);
  if (!SendMessageTimeoutA(window, message, word, value, SMTO_NORMAL, kAnswerLimit, &result)) {
    throw WindowFault("no answer to message " + std::to_string(message) + ", error " +
                      std::to_string(GetLastError()));
  }
  return static_cast<LRESULT>(result);
}

void post(HWND window, UINT message, WPARAM word, LPARAM value) {
  if (!PostMessageA(window, message, word, value)) {
    throw WindowFault("message " + std::to_string(message) + " cannot be posted, error " +
                      std::to_string(GetLastError()));
  }
}

std::string windowText(HWND window) {
  std::string text(static_cast<std::size_t>(ask(window, WM_GETTEXTLENGTH)) + 1, '\0');
  const LRESULT length = ask(window, WM_GETTEXT, text.size(), asParameter(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::string windowClass(HWND window) {
  char name[64] = "";
  GetClassNameA(window, name, sizeof name);
  return name;
}

void setWindowText(HWND window, const std::string& text) {
  ask(window, WM_SETTEXT, 0, asParameter(text.c_str()));
}

}  // namespace omniset::test
