#include "cli/drive_letter.h"

#include <algorithm>
#include <vector>

#include "cli/bad_input.h"
#include "media/drive_list.h"
#include "media/floppy_maker.h"

namespace omniset {

namespace {

// Of a drive that is not listed.
std::string reasonAgainst(char letter, Volumes& volumes) {
  if (letter == kFloppyDrive) return "\"omniset-cli floppy\" writes floppies";
  if (driveLetter(volumes.systemDirectory().substr(0, 1)) == letter) {
    return "the system runs from it";
  }
  const std::vector<std::string> all = volumes.driveStrings();
  const bool isThere = std::find(all.begin(), all.end(), driveRoot(letter)) != all.end();
  return isThere ? "it is not a disk" : "there is no such drive";
}

}  // namespace

void requireDisk(char letter, Volumes& volumes) {
  const std::string root = driveRoot(letter);
  for (const DriveEntry& drive : enumerateDrives(volumes)) {
    if (drive.root == root) return;
  }
  throw BadInput(root + " cannot be used: " + reasonAgainst(letter, volumes) +
                 ". \"omniset-cli drives\" lists the drives that may be used.");
}

}  // namespace omniset
