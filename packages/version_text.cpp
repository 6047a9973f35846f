#include "packages/version_text.h"

#include <cstdio>
#include <cstring>

#include "packages/package_format.h"

namespace omniset {

namespace {

// What stands between the minor version and the build number, or at the end without one.
const char* suffixOf(char kind, unsigned build) {
  switch (kind) {
    case 'f':
      return build == 0 ? "" : ".";
    case 'a':
      return "alpha";
    case 'b':
      return "beta";
    case 'c':
      return "rc";
    default:
      return "";
  }
}

}  // namespace

const char* versionText(std::uint32_t version) {
  static char text[80];
  std::memset(text, 0, sizeof text);
  if (version == 0 || version == kAnyVersion) {
    std::snprintf(text, sizeof text, "any");
    return text;
  }
  const unsigned major = version >> 24;
  const unsigned minor = version >> 16 & 0xFF;
  const char kind = static_cast<char>(version >> 8 & 0xFF);
  const unsigned build = version & 0xFF;
  const char* suffix = suffixOf(kind, build);
  if (build == 0) {
    std::snprintf(text, sizeof text, "%u.%u%s", major, minor, suffix);
  } else {
    std::snprintf(text, sizeof text, "%u.%u%s%u", major, minor, suffix, build);
  }
  return text;
}

}  // namespace omniset
