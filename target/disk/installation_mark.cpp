#include "target/disk/installation_mark.h"

#include <charconv>

#include "core/file_name.h"
#include "core/format_text.h"
#include "target/disk/crc32.h"

namespace omniset {

namespace {

constexpr std::string_view kFormatLine = "Omniset installation 1\n";

std::string checkLine(std::string_view lines) {
  Crc32 crc;
  crc.add({reinterpret_cast<const std::uint8_t*>(lines.data()), lines.size()});
  return formatText("check %08x\n", static_cast<unsigned>(crc.value()));
}

std::string fileLine(const MarkedFile& file) {
  return formatText("%08x %u ", static_cast<unsigned>(file.crc), static_cast<unsigned>(file.size)) +
         file.name + '\n';
}

// Cuts a number and the blank behind it off.
bool takeNumber(std::string_view& line, int base, std::uint32_t& number) {
  const char* const last = line.data() + line.size();
  const auto [end, error] = std::from_chars(line.data(), last, number, base);
  if (error != std::errc{} || end == last || *end != ' ') return false;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()) + 1);
  return true;
}

std::optional<MarkedFile> parseFileLine(std::string_view line) {
  MarkedFile file;
  if (!takeNumber(line, 16, file.crc) || !takeNumber(line, 10, file.size)) return {};
  if (!isFileName(line)) return {};
  file.name = line;
  return file;
}

// The lines between the first and the last, each with its end.
std::optional<std::string_view> fileLines(std::string_view text) {
  const std::size_t length = checkLine({}).size();
  if (text.size() > kLongestMark || text.size() < kFormatLine.size() + length) return {};
  const std::string_view checked = text.substr(0, text.size() - length);
  if (!checked.starts_with(kFormatLine) || !checked.ends_with('\n')) return {};
  if (text.substr(checked.size()) != checkLine(checked)) return {};
  return checked.substr(kFormatLine.size());
}

}  // namespace

std::string makeMark(const MarkedFiles& files) {
  std::string text(kFormatLine);
  for (const MarkedFile& file : files) text += fileLine(file);
  return text + checkLine(text);
}

std::optional<MarkedFiles> parseMark(std::string_view text) {
  std::optional<std::string_view> lines = fileLines(text);
  if (!lines) return {};
  MarkedFiles files;
  while (!lines->empty()) {
    const std::string_view line = lines->substr(0, lines->find('\n'));
    const std::optional<MarkedFile> file = parseFileLine(line);
    if (!file || files.size() == kMostMarkedFiles) return {};
    // Numbers have one form only.
    if (fileLine(*file) != lines->substr(0, line.size() + 1)) return {};
    files.push_back(*file);
    lines->remove_prefix(line.size() + 1);
  }
  return files;
}

bool isFileName(std::string_view name) {
  return isFatFileName(name) && !isSameFileName(name, kMarkName) &&
         !isSameFileName(name, kPartName);
}

}  // namespace omniset
