#include "cli/router_listing.h"

#include "cli/json_lines.h"
#include "cli/shown_text.h"

namespace omniset {

void RouterListing::announced(const RouterRecord& router) {
  const auto [known, isNew] = labels_.try_emplace(router.mac, router.label);
  if (!isNew && known->second == router.label) return;
  known->second = router.label;
  out_ << (json_ ? routerJson(router.mac, router.label)
                 : router.mac.text() + "  " + shownText(router.label) + "\n")
       << std::flush;
}

}  // namespace omniset
