#include "cli/install_boot.h"

#include "cli/exit_status.h"
#include "cli/json_lines.h"

namespace omniset {

InstallBoot::InstallBoot(const InstallOptions& options, const AdapterChoice& choice,
                         const BootImageSource& images, const Clock& clock)
    : json_(options.json),
      choice_(std::make_shared<BootChoice>(options.choice, options.routers, options.count, clock,
                                           clock.now() + options.wait)),
      worker_({choice, options.bootAddress, images,
               [asked = choice_](const MacAddress& client) { return asked->refusal(client); }}) {}

void InstallBoot::show(ProgressDisplay& display, std::ostream& out) {
  const bool hasEnded = worker_.hasEnded();
  while (const auto event = worker_.takeEvent()) {
    hasAnswered_ |= event->kind == BootEvent::Kind::kAnswered;
    display.note(bootEventLine(*event));
    if (json_) out << bootJson(*event) << std::flush;
  }
  if (hasEnded && !hasFailed_) {
    hasFailed_ = true;
    display.note(worker_.reason() + " Routers that have booted already are still installed.");
  }
}

int exitCodeWithBoot(int exitCode, RouterChoice choice, bool bootHasFailed) {
  const bool isShort = exitCode != kExitDone || choice == RouterChoice::kAll;
  return bootHasFailed && isShort ? kExitFailed : exitCode;
}

}  // namespace omniset
