#include "cli/disk_command.h"

#include <numeric>
#include <utility>

#include "cli/count_text.h"
#include "cli/exit_status.h"
#include "cli/media_checks.h"
#include "cli/media_run.h"
#include "cli/package_folder.h"
#include "cli/package_selection.h"
#include "core/interrupt.h"
#include "core/shown_text.h"
#include "media/drive_checks.h"

namespace omniset {

namespace {

// What goes onto the disk.
struct DiskPlan {
  RInfo what;
  std::int64_t packageBytes = 0;
  std::string shown;  // "the installer system and 2 packages (12 MB): system 2.9, routing 2.9"
};

DiskPlan planDisk(const DiskOptions& options, char letter, std::ostream& err) {
  PackageFolder folder(options.folder);
  warnOfUnreadable(folder, err);
  PackageSelection selection = selectPackages(options, folder.catalogue());
  for (const std::string& warning : selection.warnings) err << warning + "\n";
  DiskPlan plan;
  plan.packageBytes =
      std::accumulate(selection.sizes.begin(), selection.sizes.end(), std::int64_t{0});
  plan.shown = "the installer system and " +
               countText(static_cast<std::int64_t>(selection.files.size()), "package") + " (" +
               driveSizeText(static_cast<std::uint64_t>(plan.packageBytes)) +
               "): " + selection.list();
  plan.what = {letter,         options.folder,  std::move(selection.files), !options.script.empty(),
               options.script, options.baudRate};
  if (!options.script.empty()) {
    ownScriptSize(options.script);
    plan.shown += "; the script " + shownText(options.script);
  }
  if (options.baudRate != 0) {
    plan.shown += "; serial ports at " + std::to_string(options.baudRate) + " baud";
  }
  return plan;
}

}  // namespace

int runDisk(const DiskOptions& options, bool trace, const Console& console,
            const BootImageSource& images) {
  const DriveArgument drive = diskArgument(options.device);
  return makeDisk(options, drive, trace, console, makeMediaServices(images, drive.device));
}

int makeDisk(const DiskOptions& options, const DriveArgument& drive, bool trace,
             const Console& console, const MediaServices& services) {
  DiskPlan plan = planDisk(options, drive.letter, console.err);
  const DriveFacts facts = services.volumes->facts(drive.root);
  refuse(driveObstacle(drive.root, facts, plan.what, services));
  tellPlan(drive, facts, plan.shown, options.yes, console.err);
  if (!options.yes) return kExitBadInput;
  const InterruptGuard interrupt;
  DiskJob job("Drive maker", std::move(plan.what), services, plan.packageBytes);
  return showMedia(
      job,
      {drive.root, "disk", "Put it into the router, which installs itself when it starts.",
       options.json, trace},
      console);
}

}  // namespace omniset
