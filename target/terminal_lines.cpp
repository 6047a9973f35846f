#include "target/terminal_lines.h"

#include "core/format_text.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

// A serial console is slow, and a person is slower.
constexpr Micros kProgressInterval = 500 * kMillisecond;
constexpr const char* kBackToEmptyLine = "\r\x1b[K";

}  // namespace

void TerminalLines::say(const std::string& sentence) {
  write_((hasProgress_ ? kBackToEmptyLine : "") + shownText(sentence) + "\n");
  hasProgress_ = false;
}

void TerminalLines::progress(const MacAddress& /*target*/, const std::string& file,
                             std::int32_t stored, std::int32_t size) {
  if (clock_.now() < nextProgress_ || size <= 0) return;
  const int percent = static_cast<int>(std::int64_t{stored} * 100 / size);
  write_(formatText("%s  %3d %%  ", kBackToEmptyLine, percent) + shownText(file));
  hasProgress_ = true;
  nextProgress_ = clock_.now() + kProgressInterval;
}

}  // namespace omniset
