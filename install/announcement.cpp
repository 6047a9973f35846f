#include "install/announcement.h"

#include "link/link_frame.h"

namespace omniset {

namespace {
constexpr std::size_t kLongestAnnouncement = 1024;
constexpr int kLinesBeforeLabel = 3;
}  // namespace

std::optional<Announcement> parseAnnouncement(std::string_view payload) {
  std::string_view text = payload.substr(0, kLongestAnnouncement);
  if (!text.starts_with(word::kDiscover)) return std::nullopt;
  text = text.substr(0, text.find('\0'));
  for (int line = 0; line < kLinesBeforeLabel; ++line) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return Announcement{};
    text.remove_prefix(end + 1);
  }
  return Announcement{std::string(text.substr(0, text.find('\n')))};
}

}  // namespace omniset
