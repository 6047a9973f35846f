#include <cerrno>
#include <cstring>

#include "core/os_error.h"

namespace omniset {

namespace {

constexpr std::size_t kLongestText = 99;

// strerror_r comes in two forms, of which only one returns the text: both are taken here.
[[maybe_unused]] const char* textOf(int /*result*/, const char* buffer) {
  return buffer;
}
[[maybe_unused]] const char* textOf(const char* result, const char* /*buffer*/) {
  return result;
}

bool isPlaceholder(const std::string& text) {
  return text.empty() || text.starts_with("Unknown error") ||
         text.starts_with("No error information");
}

}  // namespace

long lastOsError() {
  return errno;
}

long lastSocketError() {
  return errno;
}

void setLastOsError(long code) {
  errno = static_cast<int>(code);
}

std::string osErrorText(long code) {
  char buffer[256] = "";
  std::string text = textOf(strerror_r(static_cast<int>(code), buffer, sizeof buffer), buffer);
  if (isPlaceholder(text)) return {};
  text.resize(std::min(text.size(), kLongestText - 1));
  return text + "\n";
}

long osErrorNotOwner() {
  return EPERM;
}

}  // namespace omniset
