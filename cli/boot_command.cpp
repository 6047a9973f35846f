#include "cli/boot_command.h"

#include <chrono>
#include <thread>

#include "cli/boot_place.h"
#include "cli/exit_status.h"
#include "cli/json_lines.h"
#include "core/error.h"
#include "core/interrupt.h"

namespace omniset {

namespace {

constexpr std::chrono::milliseconds kPollInterval(100);

void showEvents(BootWorker& worker, bool json, std::ostream& out) {
  while (const auto event = worker.takeEvent()) {
    out << (json ? bootJson(*event) : bootEventLine(*event) + "\n") << std::flush;
  }
}

}  // namespace

int runBoot(const BootOptions& options, const Console& console, const BootImageSource& images) {
  SystemLocalAddresses addresses;
  const AdapterChoice choice = chooseBootAdapter(
      SystemNetworkInterfaces().list(), options.interfaceName, options.clientAddress, addresses);
  const InterruptGuard interrupt;
  BootWorker worker({choice, options.clientAddress, images});
  console.err << bootSentence(choice, options.clientAddress) + " Press Ctrl-C to end." << std::endl;
  bool hasEnded = false;
  while (!hasEnded && !interrupt.requested() && console.out) {
    std::this_thread::sleep_for(kPollInterval);
    hasEnded = worker.hasEnded();
    showEvents(worker, options.json, console.out);
  }
  if (hasEnded) throw Failure(worker.reason());
  showEvents(worker, options.json, console.out);
  return kExitDone;
}

}  // namespace omniset
