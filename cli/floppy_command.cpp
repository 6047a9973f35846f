#include "cli/floppy_command.h"

#include "cli/exit_status.h"
#include "cli/media_checks.h"
#include "cli/media_run.h"
#include "core/interrupt.h"
#include "core/shown_text.h"
#include "media/drive_checks.h"

namespace omniset {

int runFloppy(const FloppyOptions& options, bool trace, const Console& console,
              const BootImageSource& images) {
  const DriveArgument drive = floppyArgument(options.device, options.yes);
  return makeFloppy(options, drive, trace, console, makeMediaServices(images, drive.device));
}

int makeFloppy(const FloppyOptions& options, const DriveArgument& drive, bool trace,
               const Console& console, const MediaServices& services) {
  const DriveFacts facts = services.volumes->facts(drive.root);
  refuse(floppyObstacle(drive.root, facts));
  tellPlan(drive, facts, "the installer system and the label \"" + shownText(options.label) + "\"",
           options.yes, console.err);
  if (!options.yes) return kExitBadInput;
  const InterruptGuard interrupt;
  FloppyJob job("Floppy maker", options.label, services);
  return showMedia(job,
                   {drive.root, "floppy", "Start the PC from it, and install it over the network.",
                    options.json, trace},
                   console);
}

}  // namespace omniset
