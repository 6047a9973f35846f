// Which PCs may boot over the network while routers are installed.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "cli/install_run.h"
#include "core/sync.h"

namespace omniset {

// Learns from the installation's run; asked by the boot service's thread.
class BootChoice : public InstallListener {
 public:
  BootChoice(RouterChoice choice, const std::vector<MacAddress>& named, std::size_t count)
      : choice_(choice), named_(named.begin(), named.end()), count_(count) {}

  // As BootRefusal. A PC that was installed is to start what it was given, though its firmware may
  // try the network first. For any thread.
  std::string refusal(const MacAddress& client) const;

  void routerSeen(const MacAddress& mac, const std::string& label) override;
  void statusChanged(const RouterState& state) override;
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override;

 private:
  const RouterChoice choice_;
  const std::set<MacAddress> named_;
  const std::size_t count_;

  mutable Mutex mutex_;
  std::set<MacAddress> started_;
  std::set<MacAddress> installed_;
};

}  // namespace omniset
