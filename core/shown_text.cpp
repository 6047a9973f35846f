#include "core/shown_text.h"

#include <cstdint>

#include "core/format_text.h"

namespace omniset {

namespace {

struct Character {
  std::size_t length = 1;  // in bytes
  bool isShowable = false;
};

bool isContinuation(char c) {
  return (static_cast<std::uint8_t>(c) & 0xC0) == 0x80;
}

// The length that a first byte announces, 0 for one that cannot begin a character.
std::size_t announcedLength(std::uint8_t first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  if (first >= 0xF0 && first < 0xF5) return 4;
  return 0;
}

// Overlong forms, surrogates and what lies beyond the last character are not valid.
bool isValid(std::uint32_t code, std::size_t length) {
  if (length == 3) return code >= 0x800 && (code < 0xD800 || code > 0xDFFF);
  if (length == 4) return code >= 0x10000 && code <= 0x10FFFF;
  return true;
}

// `text` is not empty.
Character firstCharacter(std::string_view text) {
  const auto first = static_cast<std::uint8_t>(text.front());
  const std::size_t length = announcedLength(first);
  if (length == 0 || length > text.size()) return {};
  std::uint32_t code = length == 1 ? first : first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) return {};
    code = code << 6 | (static_cast<std::uint8_t>(text[i]) & 0x3Fu);
  }
  if (!isValid(code, length)) return {};
  const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
  return {length, !isControl};
}

// Copies what can be shown; `replace` gets each byte of what cannot, and appends to the result.
template <class Replace>
std::string filtered(std::string_view text, Replace replace) {
  std::string result;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (character.isShowable) {
      result.append(text.substr(0, character.length));
    } else {
      for (const char byte : text.substr(0, character.length)) replace(byte, result);
    }
    text.remove_prefix(character.length);
  }
  return result;
}

}  // namespace

std::string shownText(std::string_view text) {
  while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
  return filtered(text, [](char byte, std::string& result) {
    if (byte == '\r') return;
    result += byte == '\n' ? ' ' : '?';
  });
}

std::string escapedText(std::string_view text) {
  return filtered(text, [](char byte, std::string& result) {
    if (byte == '\n' || byte == '\t') {
      result += byte;
    } else {
      result += formatText("\\x%02X", static_cast<std::uint8_t>(byte));
    }
  });
}

std::string cutToColumns(std::string_view text, std::size_t columns) {
  std::size_t end = 0;
  while (end < text.size()) {
    if (!isContinuation(text[end]) && columns-- == 0) break;
    ++end;
  }
  return std::string(text.substr(0, end));
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (const char c : text) columns += isContinuation(c) ? 0 : 1;
  return columns;
}

std::string padded(std::string text, std::size_t columns) {
  const std::size_t used = columnsOf(text);
  if (used < columns) text.append(columns - used, ' ');
  return text;
}

}  // namespace omniset
