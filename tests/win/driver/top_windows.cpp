#include "tests/win/driver/top_windows.h"

namespace omniset::test {

namespace {

struct Search {
  DWORD process;
  std::vector<HWND> found;
};

BOOL CALLBACK collect(HWND window, LPARAM parameter) {
  auto* search = reinterpret_cast<Search*>(parameter);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner == search->process && IsWindowVisible(window)) search->found.push_back(window);
  return TRUE;
}

// Without asking the window: it may be about to vanish.
std::string captionOf(HWND window) {
  char text[256] = "";
  GetWindowTextA(window, text, sizeof text);
  return text;
}

std::string captions(const Process& process) {
  std::string all;
  for (const HWND window : topWindows(process)) all += " \"" + captionOf(window) + "\"";
  return all.empty() ? "no window" : "the windows" + all;
}

}  // namespace

std::vector<HWND> topWindows(const Process& process) {
  Search search{process.id(), {}};
  EnumWindows(collect, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND awaitTopWindow(const Process& process, const std::string& caption, Milliseconds limit) {
  HWND found = nullptr;
  waitUntil(
      "a window \"" + caption + "\"",
      [&] {
        if (!process.isRunning()) {
          throw WindowFault("the program ended with code " + std::to_string(process.waitForEnd()) +
                            " before it showed \"" + caption + "\"");
        }
        for (const HWND window : topWindows(process)) {
          if (captionOf(window) == caption) found = window;
        }
        return found != nullptr;
      },
      [&] { return captions(process); }, limit);
  return found;
}

}  // namespace omniset::test
