// Which PCs may boot over the network while routers are installed.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cli/install_run.h"
#include "core/clock.h"
#include "core/sync.h"

namespace omniset {

// Learns from the installation's run; asked by the boot service's thread.
class BootChoice : public InstallListener {
 public:
  // How long a PC that boots may take to announce itself; then another may boot in its place.
  static constexpr Micros kLongestBoot = 180 * kSecond;

  // Routers are taken until the time `end` of the clock, which outlives this.
  BootChoice(RouterChoice choice, const std::vector<MacAddress>& named, std::size_t count,
             const Clock& clock, Micros end)
      : choice_(choice),
        named_(named.begin(), named.end()),
        count_(count),
        clock_(clock),
        end_(end) {}

  // As BootRefusal. A PC that was installed is to start what it was given, though its firmware may
  // try the network first. For any thread.
  std::string refusal(const MacAddress& client);

  void routerSeen(const MacAddress& mac, const std::string& label) override;
  void statusChanged(const RouterState& state) override;
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override;

 private:
  const RouterChoice choice_;
  const std::set<MacAddress> named_;
  const std::size_t count_;
  const Clock& clock_;
  const Micros end_;

  bool areEnoughOnTheirWay(const MacAddress& client, Micros now) const;

  Mutex mutex_;  // guards what follows
  std::set<MacAddress> started_;
  std::set<MacAddress> installed_;
  std::map<MacAddress, Micros> booting_;  // since when
};

}  // namespace omniset
