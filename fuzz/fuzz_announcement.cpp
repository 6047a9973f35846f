// Feeds any payload to the parser of announcements.
#include "fuzz/fuzz_input.h"
#include "install/announcement.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using omniset::fuzz::require;
  const std::string_view payload = omniset::asText({data, size});
  const auto announcement = omniset::parseAnnouncement(payload);
  require(announcement.has_value() == payload.starts_with("DSCV"));
  if (!announcement) return 0;
  require(announcement->label.size() <= 1024);
  require(announcement->label.find('\n') == std::string::npos);
  require(announcement->label.find('\0') == std::string::npos);
  require(payload.find(announcement->label) != std::string_view::npos);
  return 0;
}
