// What the program needs to know of the terminal.
#pragma once

#include <cstddef>
#include <optional>

namespace omniset {

struct TerminalSize {
  std::size_t columns = 80;
  std::size_t rows = 24;
};

// The present size of the terminal that standard error goes to; nothing when it goes elsewhere or
// when the terminal cannot redraw lines. Makes the terminal understand escape sequences.
std::optional<TerminalSize> standardErrorTerminal();

bool isStandardOutputTerminal();

// Lines on standard error may be redrawn in place: it is a terminal, and neither trace lines nor
// JSON lines on the same terminal would spoil them.
bool mayRedraw(bool json, bool trace);

}  // namespace omniset
