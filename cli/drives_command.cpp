#include "cli/drives_command.h"

#include <vector>

#include "cli/drive_table.h"
#include "cli/exit_status.h"
#include "cli/json_lines.h"

namespace omniset {

int runDrives(const DrivesOptions& options, const Console& console, Volumes& volumes) {
  std::vector<DriveRow> rows;
  for (const DriveEntry& drive : enumerateDrives(volumes)) {
    rows.push_back({drive, volumes.facts(drive.root)});
  }
  if (options.json) {
    for (const DriveRow& row : rows) console.out << driveJson(row);
  } else if (!rows.empty()) {
    console.out << driveTable(rows);
  }
  if (rows.empty()) {
    console.err << "There is no drive that a disk can be made of. Attach one and try again: the "
                   "drive that the system runs from and floppy drives are not listed.\n";
  }
  return kExitDone;
}

}  // namespace omniset
