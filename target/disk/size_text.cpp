#include "target/disk/size_text.h"

#include "core/format_text.h"

namespace omniset {

namespace {

constexpr std::uint64_t kMostMegabytes = 10 * 1024;

}  // namespace

std::string sizeText(std::uint64_t sectors) {
  const std::uint64_t megabytes = sectors / kSectorsPerMegabyte;
  const bool isLarge = megabytes >= kMostMegabytes;
  return formatText("%u %s", static_cast<unsigned>(isLarge ? megabytes / 1024 : megabytes),
                    isLarge ? "GB" : "MB");
}

}  // namespace omniset
