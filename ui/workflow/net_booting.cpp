#include "ui/workflow/net_booting.h"

#include "boot/boot_checks.h"
#include "core/error.h"
#include "core/trace.h"

namespace omniset {

void NetBooting::changeSettings(const BootServerSettings& entered) {
  settings_ = entered;
  const PixieConfig config{entered.enabled, entered.clientAddress};
  if (!service_.hasEnded()) {
    service_.configure(config);
  } else if (entered.enabled) {
    service_.start(config);
    endTold_ = false;
  }
  if (entered.enabled) warnOfAddress();
}

// Only a help: the service itself takes the address as it is.
void NetBooting::warnOfAddress() {
  try {
    if (const auto problem = clientAddressProblem(settings_.clientAddress, addresses_)) {
      person_.tell("Warning",
                   *problem + " Until \"Net booting\" is given another, PCs get this one.",
                   Operator::Icon::kNone);
    }
  } catch (const Error& failure) {
    traceLine(std::string("checking the client address: ") + failure.what());
  }
}

void NetBooting::poll() {
  if (endTold_ || !settings_.enabled || !service_.hasEnded()) return;
  endTold_ = true;
  person_.tell("Error", bootFailureText(service_.reason()), Operator::Icon::kError);
}

}  // namespace omniset
