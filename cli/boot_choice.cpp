#include "cli/boot_choice.h"

namespace omniset {

std::string BootChoice::refusal(const MacAddress& client) {
  if (choice_ == RouterChoice::kNamed && !named_.contains(client)) {
    return "it is not among the routers of --router";
  }
  const ScopedLock lock(mutex_);
  const Micros now = clock_.now();
  if (installed_.contains(client)) return "it has been installed";
  if (started_.contains(client)) return {};
  if (now >= end_) return "the time that --wait gives is over";
  if (choice_ == RouterChoice::kFirst && areEnoughOnTheirWay(client, now)) {
    return "as many routers as --first asks for have begun";
  }
  booting_[client] = now;
  return {};
}

// Those that have announced themselves, and those that will.
bool BootChoice::areEnoughOnTheirWay(const MacAddress& client, Micros now) const {
  std::size_t count = started_.size();
  for (const auto& [other, since] : booting_) {
    if (other != client && !started_.contains(other) && now - since < kLongestBoot) ++count;
  }
  return count >= count_;
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
