#include "cli/media_progress.h"

#include <algorithm>

#include "cli/progress_line.h"
#include "core/format_text.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

constexpr Micros kDrawInterval = kSecond / 5;
constexpr std::size_t kTextColumns = 36;  // so that the bar stands still while short texts change
constexpr const char* kClearToLineEnd = "\x1b[K";

}  // namespace

std::string mediaLine(const std::string& device, const MediaState& state, Micros elapsed,
                      std::size_t columns) {
  std::string line = shownText(device) + "  " + padded(shownText(state.text), kTextColumns) + "  ";
  const int percent = percentOf(state.done, state.total);
  const std::string rest = formatText("%3d %%  ", percent) + durationText(elapsed);
  const std::size_t used = columnsOf(line) + rest.size() + 2;
  const std::string bar = progressBar(percent, columns - std::min(columns, used));
  if (!bar.empty()) line += bar + "  ";
  return cutToColumns(line + rest, columns);
}

void PlainMedia::tell(const std::string& text) {
  err_ << shownText(device_) + "  " + shownText(text) + "\n" << std::flush;
}

void PlainMedia::changed(const MediaState& state) {
  if (state.text == told_) return;
  told_ = state.text;
  tell(state.text);
}

void PlainMedia::ended(const MediaOutcome& outcome) {
  tell((outcome.isDone ? "done: " : "failed: ") + outcome.text);
}

// No line fills the last column, where some terminals wrap at once.
void LiveMedia::tick(Micros now) {
  if (!startedAt_) startedAt_ = now;
  const auto size = size_();
  if (!state_ || !size || now - drawnAt_ < kDrawInterval) return;
  drawnAt_ = now;
  const std::size_t columns = size->columns > 1 ? size->columns - 1 : 1;
  err_ << "\r" + mediaLine(device_, *state_, now - *startedAt_, columns) + kClearToLineEnd
       << std::flush;
}

void LiveMedia::ended(const MediaOutcome& /*outcome*/) {
  if (state_) err_ << std::string("\r") + kClearToLineEnd << std::flush;
}

void MediaResultLine::ended(const MediaOutcome& outcome) {
  out_ << shownText(device_) + (outcome.isDone ? "  ok      " : "  failed  ") +
              shownText(outcome.text)
       << std::endl;
}

}  // namespace omniset
