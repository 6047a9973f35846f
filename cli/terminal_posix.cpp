#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "cli/terminal.h"

namespace omniset {

std::optional<TerminalSize> standardErrorTerminal() {
  if (!isatty(STDERR_FILENO)) return std::nullopt;
  const char* kind = std::getenv("TERM");
  if (!kind || std::string_view(kind) == "dumb") return std::nullopt;
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) < 0 || size.ws_col == 0 || size.ws_row == 0) {
    return TerminalSize{};
  }
  return TerminalSize{size.ws_col, size.ws_row};
}

bool isStandardOutputTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

}  // namespace omniset
