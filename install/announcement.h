// The announcement of a target that has booted: "DSCV", two lines about the machine that the
// installer does not interpret, and the router's label, each ended by a line feed.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace omniset {

struct Announcement {
  std::string label;  // whatever bytes the target sent, without a line feed
};

// Nothing for a payload that does not begin with the word. Only the first 1024 bytes are looked at,
// and only those before a zero byte; the label of one with too few lines is what is there, or
// empty.
std::optional<Announcement> parseAnnouncement(std::string_view payload);

}  // namespace omniset
