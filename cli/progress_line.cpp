#include "cli/progress_line.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/format_text.h"
#include "core/shown_text.h"
#include "install/status_name.h"

namespace omniset {

namespace {

constexpr Micros kRateWindow = 3 * kSecond;
constexpr Micros kShortestRateWindow = kSecond / 2;
constexpr std::size_t kShortestBar = 10;  // with its brackets
constexpr std::size_t kLongestBar = 42;
constexpr double kSlowestRate = 1;  // bytes a second for which a time left is worth telling

struct Unit {
  std::int64_t size;
  const char* name;
};
constexpr std::array<Unit, 3> kUnits{{{1'000'000'000, "GB"}, {1'000'000, "MB"}, {1'000, "kB"}}};

// Null for bytes.
const Unit* unitFor(std::int64_t bytes) {
  for (const Unit& unit : kUnits) {
    if (bytes >= unit.size) return &unit;
  }
  return nullptr;
}

double inUnit(std::int64_t bytes, const Unit& unit) {
  return static_cast<double>(bytes) / static_cast<double>(unit.size);
}

std::string rateText(std::optional<double> rate) {
  return rate ? sizeText(std::llround(*rate)) + "/s" : "";
}

std::string timeLeftText(const RouterState& state, std::optional<double> rate) {
  if (!rate || *rate < kSlowestRate || state.bytes >= state.total) return "";
  const double seconds = static_cast<double>(state.total - state.bytes) / *rate;
  if (seconds > 360'000) return "";
  return durationText(std::llround(seconds * static_cast<double>(kSecond))) + " left";
}

bool isSending(const RouterState& state) {
  return state.status == RouterStatus::kInstalling && state.bytes > 0;
}

}  // namespace

std::string sizeText(std::int64_t bytes) {
  const Unit* unit = unitFor(bytes);
  if (!unit) return std::to_string(bytes) + " B";
  return formatText("%.1f %s", inUnit(bytes, *unit), unit->name);
}

std::string amountText(std::int64_t bytes, std::int64_t total) {
  const Unit* unit = unitFor(total);
  if (!unit) return std::to_string(bytes) + " of " + sizeText(total);
  return formatText("%.1f of ", inUnit(bytes, *unit)) + sizeText(total);
}

std::string durationText(Micros duration) {
  const long long seconds = (duration + kSecond - 1) / kSecond;
  if (seconds < 3600) return formatText("%lld:%02lld", seconds / 60, seconds % 60);
  return formatText("%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

int percentOf(std::int64_t done, std::int64_t total) {
  if (total <= 0) return 0;
  return static_cast<int>(std::clamp<std::int64_t>(done, 0, total) * 100 / total);
}

std::string progressBar(int percent, std::size_t columns) {
  const std::size_t most = std::min(columns, kLongestBar);
  if (most < kShortestBar) return "";
  const std::size_t room = most - 2;
  const std::size_t filled = room * static_cast<std::size_t>(percent) / 100;
  return "[" + std::string(filled, '#') + std::string(room - filled, '-') + "]";
}

void RateMeter::add(Micros now, std::int64_t bytes) {
  const bool isStart = bytes == 0 || (!samples_.empty() && bytes < samples_.back().bytes);
  if (isStart) samples_.clear();
  samples_.push_back({now, bytes});
  // The sample at the window's edge stays, so that the window is always covered.
  while (samples_.size() > 2 && now - samples_[1].time >= kRateWindow) samples_.pop_front();
}

std::optional<double> RateMeter::bytesPerSecond() const {
  if (samples_.empty()) return std::nullopt;
  const Micros time = samples_.back().time - samples_.front().time;
  if (time < kShortestRateWindow) return std::nullopt;
  const auto bytes = static_cast<double>(samples_.back().bytes - samples_.front().bytes);
  return bytes * static_cast<double>(kSecond) / static_cast<double>(time);
}

std::string progressLine(const RouterState& state, std::optional<double> bytesPerSecond,
                         std::size_t columns) {
  std::string line = state.mac.text() + "  " + statusName(state.status) + "  ";
  if (!isSending(state)) return cutToColumns(line + shownText(state.text), columns);
  const int percent = percentOf(state.bytes, state.total);
  line += formatText("%3d %%  ", percent);
  const std::string rest = padded(amountText(state.bytes, state.total), 16) + "  " +
                           padded(rateText(bytesPerSecond), 10) + "  " +
                           padded(timeLeftText(state, bytesPerSecond), 9);
  const std::size_t used = line.size() + rest.size() + 2;
  const std::string bar = progressBar(percent, columns - std::min(columns, used));
  if (!bar.empty()) line += bar + "  ";
  return cutToColumns(line + rest, columns);
}

std::string resultLine(const MacAddress& mac, bool ok, const std::string& text) {
  return mac.text() + (ok ? "  ok      " : "  failed  ") + shownText(text);
}

}  // namespace omniset
