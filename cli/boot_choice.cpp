#include "cli/boot_choice.h"

namespace omniset {

std::string BootChoice::refusal(const MacAddress& client) const {
  if (choice_ == RouterChoice::kNamed && !named_.contains(client)) {
    return "it is not among the routers of --router";
  }
  const ScopedLock lock(mutex_);
  if (installed_.contains(client)) return "it has been installed";
  if (choice_ == RouterChoice::kFirst && started_.size() >= count_ && !started_.contains(client)) {
    return "as many routers as --first asks for have begun";
  }
  return {};
}

void BootChoice::routerSeen(const MacAddress& mac, const std::string& /*label*/) {
  const ScopedLock lock(mutex_);
  started_.insert(mac);
}

void BootChoice::statusChanged(const RouterState& /*state*/) {}

void BootChoice::routerDone(const MacAddress& mac, bool ok, const std::string& /*text*/) {
  const ScopedLock lock(mutex_);
  if (ok) installed_.insert(mac);
}

}  // namespace omniset
