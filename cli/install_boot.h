// The boot service beside an installation: it boots what is to be installed.
#pragma once

#include <memory>
#include <ostream>

#include "cli/boot_choice.h"
#include "cli/boot_worker.h"
#include "cli/options.h"
#include "cli/progress_display.h"

namespace omniset {

class InstallBoot {
 public:
  // As BootWorker. The clock outlives this.
  InstallBoot(const InstallOptions& options, const AdapterChoice& choice,
              const BootImageSource& images, const Clock& clock);

  // To be told of the installation's run.
  InstallListener& listener() { return *choice_; }

  // Shows what has happened since the last time, and once the sentence that says why the service
  // failed; with --json the events go to `out` as well.
  void show(ProgressDisplay& display, std::ostream& out);

  // A PC has asked to boot, and was given an address.
  bool hasAnswered() const { return hasAnswered_; }

  // The service ended by itself, and that was shown.
  bool hasFailed() const { return hasFailed_; }

 private:
  const bool json_;
  std::shared_ptr<BootChoice> choice_;  // shared with the service
  BootWorker worker_;
  bool hasAnswered_ = false;
  bool hasFailed_ = false;
};

// A run that wanted every router, or that missed some, cannot be called done, nor can its operator
// be sent to look at the routers, when the boot service failed.
int exitCodeWithBoot(int exitCode, RouterChoice choice, bool bootHasFailed);

}  // namespace omniset
