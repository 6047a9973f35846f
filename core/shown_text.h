// Text from the network or from files, made fit for a terminal: nothing in it moves the cursor,
// starts an escape sequence or breaks the encoding.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace omniset {

// One line: each line break becomes a blank (none at the end), every other control character and
// every byte that is not valid UTF-8 becomes '?'.
std::string shownText(std::string_view text);

// Several lines: line feeds and tabs stay, other control characters and bytes that are not valid
// UTF-8 become "\x1B" and the like.
std::string escapedText(std::string_view text);

// The first `columns` characters of valid UTF-8, one column each.
std::string cutToColumns(std::string_view text, std::size_t columns);

// The number of characters of valid UTF-8.
std::size_t columnsOf(std::string_view text);

// Filled up with blanks.
std::string padded(std::string text, std::size_t columns);

}  // namespace omniset
