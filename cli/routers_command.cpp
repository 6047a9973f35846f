#include "cli/routers_command.h"

#include <chrono>
#include <thread>

#include "cli/adapter_choice.h"
#include "cli/exit_status.h"
#include "cli/installer_worker.h"
#include "cli/router_listing.h"
#include "core/error.h"
#include "core/interrupt.h"

namespace omniset {

namespace {

constexpr std::chrono::milliseconds kPollInterval(100);

void showAnnouncements(RouterInstaller& installer, RouterListing& listing) {
  std::vector<RouterRecord> routers;
  {
    RouterInstaller::Access access = installer.access();
    while (auto router = access.takeAnnouncement()) routers.push_back(std::move(*router));
  }
  for (const RouterRecord& router : routers) listing.announced(router);
}

}  // namespace

int runRouters(const RoutersOptions& options, const Console& console) {
  const AdapterChoice choice =
      chooseAdapter(SystemNetworkInterfaces().list(), options.interfaceName);
  if (choice.isGuess) console.err << guessWarning(choice) << std::endl;
  const InterruptGuard interrupt;
  InstallerWorker worker(choice);
  RouterListing listing(console.out, options.json);
  const Micros end = worker.clock().now() + options.listen;
  while (worker.clock().now() < end && !interrupt.requested() && console.out) {
    std::this_thread::sleep_for(kPollInterval);
    showAnnouncements(worker.installer(), listing);
    if (worker.hasEnded()) throw Failure(worker.reason());
  }
  if (!listing.isEmpty()) return kExitDone;
  console.err << "No router announced itself on " + choice.shownName +
                     ". Check that it has booted the installer and is on the same network, or "
                     "listen longer with --seconds.\n";
  return kExitNoRouter;
}

}  // namespace omniset
