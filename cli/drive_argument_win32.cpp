#include "cli/bad_input.h"
#include "cli/drive_argument.h"
#include "cli/drive_letter.h"
#include "core/shown_text.h"
#include "media/floppy_maker.h"

namespace omniset {

DriveArgument diskArgument(const std::string& written) {
  const auto letter = driveLetter(written);
  if (!letter) {
    throw BadInput("'" + shownText(written) +
                   "' is not a drive: write its letter and a colon, for example --device E:. "
                   "\"omniset-cli drives\" lists the drives that may be used.");
  }
  requireDisk(*letter, *makeSystemVolumes());
  return {*letter, driveRoot(*letter), {}};
}

DriveArgument floppyArgument(const std::string& written, bool /*mayCreate*/) {
  if (driveLetter(written) != kFloppyDrive) {
    throw BadInput("--device '" + shownText(written) +
                   "' is not the floppy drive: only --device A: is possible.");
  }
  return {kFloppyDrive, driveRoot(kFloppyDrive), {}};
}

}  // namespace omniset
