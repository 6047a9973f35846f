#include "cli/router_listing.h"

#include "cli/json_lines.h"
#include "core/shown_text.h"

namespace omniset {

namespace {
// More than a segment has; it bounds what a flood of invented routers can use up.
constexpr std::size_t kMostRouters = 4096;
}  // namespace

void RouterListing::announced(const RouterRecord& router) {
  if (labels_.size() >= kMostRouters && !labels_.contains(router.mac)) return;
  const auto [known, isNew] = labels_.try_emplace(router.mac, router.label);
  if (!isNew && known->second == router.label) return;
  known->second = router.label;
  out_ << (json_ ? routerJson(router.mac, router.label)
                 : router.mac.text() + "  " + shownText(router.label) + "\n")
       << std::flush;
}

}  // namespace omniset
