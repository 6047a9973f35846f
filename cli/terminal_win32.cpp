#include <windows.h>

#include "cli/terminal.h"

namespace omniset {

namespace {
// Consoles before Windows 10 refuse it.
constexpr DWORD kEscapeSequences = 0x0004;
}  // namespace

std::optional<TerminalSize> standardErrorTerminal() {
  const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(console, &mode)) return std::nullopt;
  if (!(mode & kEscapeSequences) && !SetConsoleMode(console, mode | kEscapeSequences)) {
    return std::nullopt;
  }
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(console, &info)) return TerminalSize{};
  const SMALL_RECT& window = info.srWindow;
  return TerminalSize{static_cast<std::size_t>(window.Right - window.Left + 1),
                      static_cast<std::size_t>(window.Bottom - window.Top + 1)};
}

bool isStandardOutputTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

}  // namespace omniset
