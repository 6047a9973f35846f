#include "payload/loader/common/configuration.h"

#include "payload/loader/common/letters.h"

namespace omniset::loader {
namespace {

constexpr bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}
// Zeros and other control characters have no business in names and count as blanks.
constexpr bool isBlank(char c) {
  return (static_cast<unsigned char>(c) <= ' ') && !isLineEnd(c);
}

// What stands before the first character that is an end, taken off the text's front.
template <typename IsEnd>
std::string_view takeUntil(std::string_view& text, IsEnd isEnd) {
  std::size_t size = 0;
  while (size < text.size() && !isEnd(text[size])) ++size;
  const std::string_view taken(text.data(), size);
  text.remove_prefix(size);
  return taken;
}

void skipBlanks(std::string_view& text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
}

std::string_view takeWord(std::string_view& text) {
  skipBlanks(text);
  return takeUntil(text, isBlank);
}

std::string_view trimmed(std::string_view text) {
  skipBlanks(text);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The keyword is given in capitals.
bool isKeyword(std::string_view word, const char* keyword) {
  for (const char c : word) {
    if (capital(c) != *keyword || c == 0) return false;
    ++keyword;
  }
  return *keyword == 0;
}

std::string_view ramDiskIn(std::string_view commandLine) {
  while (!commandLine.empty()) {
    std::string_view word = takeWord(commandLine);
    const std::string_view name = takeUntil(word, [](char c) { return c == '='; });
    if (!isKeyword(name, "INITRD") || word.empty()) continue;
    word.remove_prefix(1);
    return word;
  }
  return {};
}

// Returns false when there is no room.
template <std::size_t kRoom>
bool keep(std::array<char, kRoom>& to, std::string_view text) {
  if (text.size() >= kRoom) return false;
  std::size_t size = 0;
  for (const char c : text) to[size++] = isBlank(c) ? ' ' : c;
  to[size] = 0;
  return true;
}

struct Lines {
  std::string_view kernel;
  std::string_view commandLine;
};

// Lines that are not of interest are passed over: comments, unknown keywords, and TIMEOUT, which
// says how long a prompt waits for the operator. There is no prompt: an installation that nobody
// watches must not wait, so it boots at once.
Lines readLines(std::string_view text) {
  Lines lines;
  bool hasLabel = false;
  while (!text.empty()) {
    std::string_view line = takeUntil(text, isLineEnd);
    if (!text.empty()) text.remove_prefix(1);
    const std::string_view keyword = takeWord(line);
    if (isKeyword(keyword, "LABEL")) {
      if (hasLabel) break;
      hasLabel = true;
    } else if (isKeyword(keyword, "KERNEL")) {
      lines.kernel = takeWord(line);
    } else if (isKeyword(keyword, "APPEND")) {
      lines.commandLine = trimmed(line);
    }
  }
  return lines;
}

}  // namespace

ConfigurationFault readConfiguration(std::string_view text, BootConfiguration& configuration) {
  const auto [kernel, commandLine] = readLines(text);
  if (kernel.empty()) return ConfigurationFault::kNoKernel;
  if (!keep(configuration.kernel, kernel) || !keep(configuration.ramDisk, ramDiskIn(commandLine))) {
    return ConfigurationFault::kLongName;
  }
  return keep(configuration.commandLine, commandLine) ? ConfigurationFault::kNone
                                                      : ConfigurationFault::kLongCommandLine;
}

}  // namespace omniset::loader
