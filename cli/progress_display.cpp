#include "cli/progress_display.h"

#include "core/shown_text.h"
#include "install/status_name.h"

namespace omniset {

namespace {

constexpr Micros kDrawInterval = kSecond / 5;

constexpr const char* kClearToLineEnd = "\x1b[K";
constexpr const char* kClearBelow = "\x1b[J";

std::string announcementLine(const MacAddress& mac, const std::string& label) {
  return mac.text() + "  announced itself: " + shownText(label);
}

std::string cursorUp(std::size_t lines) {
  return lines == 0 ? "" : "\x1b[" + std::to_string(lines) + "A";
}

}  // namespace

void PlainProgress::tell(const MacAddress& mac, const std::string& text) {
  err_ << mac.text() + "  " + text + "\n" << std::flush;
}

void PlainProgress::routerSeen(const MacAddress& mac, const std::string& label) {
  note(announcementLine(mac, label));
}

void PlainProgress::statusChanged(const RouterState& state) {
  Row& row = rows_[state.mac];
  const bool isNews = state.status != row.state.status || state.text != row.state.text;
  row.state = state;
  // The texts of the others come with the result.
  const bool goesOn =
      state.status == RouterStatus::kInstalling || state.status == RouterStatus::kWaitingReboot;
  if (isNews && goesOn) {
    tell(state.mac, statusName(state.status) + (": " + shownText(state.text)));
  }
}

void PlainProgress::tellTenths(Row& row) {
  const int tenths = percentOf(row.state.bytes, row.state.total) / 10;
  if (tenths <= row.tenthsTold || row.state.status != RouterStatus::kInstalling) return;
  row.tenthsTold = tenths;
  std::string text =
      std::to_string(tenths * 10) + " %, " + amountText(row.state.bytes, row.state.total);
  if (const auto rate = row.rate.bytesPerSecond()) {
    text += ", " + sizeText(static_cast<std::int64_t>(*rate)) + "/s";
  }
  tell(row.state.mac, text);
}

void PlainProgress::routerDone(const MacAddress& mac, bool ok, const std::string& text) {
  rows_.erase(mac);
  tell(mac, (ok ? "done: " : "failed: ") + shownText(text));
}

void PlainProgress::tick(Micros now) {
  for (auto& [mac, row] : rows_) {
    row.rate.add(now, row.state.bytes);
    tellTenths(row);
  }
}

void PlainProgress::note(const std::string& line) {
  err_ << line + "\n" << std::flush;
}

void LiveProgress::routerSeen(const MacAddress& mac, const std::string& label) {
  rows_[mac].state.mac = mac;
  note(announcementLine(mac, label));
}

void LiveProgress::statusChanged(const RouterState& state) {
  rows_[state.mac].state = state;
}

void LiveProgress::routerDone(const MacAddress& mac, bool ok, const std::string& text) {
  rows_.erase(mac);
  leave(showResults_ ? resultLine(mac, ok, text) + "\n" : "");
}

void LiveProgress::note(const std::string& line) {
  leave(line + "\n");
}

// In place of the live lines, which are drawn again below it.
void LiveProgress::leave(const std::string& text) {
  std::string output;
  if (drawn_ > 0) output = cursorUp(drawn_) + "\r" + kClearBelow;
  drawn_ = 0;
  drawnAt_.reset();
  err_ << output + text << std::flush;
}

// In one piece, so that the terminal never shows half a picture.
void LiveProgress::tick(Micros now) {
  if (drawnAt_ && now - *drawnAt_ < kDrawInterval) return;
  drawnAt_ = now;
  for (auto& [mac, row] : rows_) row.rate.add(now, row.state.bytes);
  const auto size = size_();
  if (!size || (rows_.empty() && drawn_ == 0)) return;
  const std::string before = cursorUp(drawn_) + "\r";
  const std::string text = lines(*size, drawn_);
  err_ << before + text + kClearBelow << std::flush;
}

// No line fills the last column, where some terminals wrap at once; and not more lines than the
// terminal has, or the cursor could not get back to the first one.
std::string LiveProgress::lines(const TerminalSize& size, std::size_t& count) const {
  const std::size_t columns = size.columns > 1 ? size.columns - 1 : 1;
  const std::size_t room = size.rows > 2 ? size.rows - 2 : 1;
  std::string text;
  count = 0;
  for (const auto& [mac, row] : rows_) {
    if (count == room && rows_.size() > room) {
      const std::string more = "and " + std::to_string(rows_.size() - room) + " more";
      text += cutToColumns(more, columns) + kClearToLineEnd + "\n";
      ++count;
      break;
    }
    text += progressLine(row.state, row.rate.bytesPerSecond(), columns) + kClearToLineEnd + "\n";
    ++count;
  }
  return text;
}

}  // namespace omniset
