#include "cli/media_checks.h"

#include "cli/bad_input.h"
#include "core/shown_text.h"
#include "media/drive_checks.h"

namespace omniset {

void refuse(const std::string& obstacle) {
  if (!obstacle.empty()) throw BadInput(shownText(obstacle));
}

void tellPlan(const DriveArgument& drive, const DriveFacts& facts, const std::string& toWrite,
              bool yes, std::ostream& err) {
  std::string text = yes ? "Erasing: " : "Would erase: ";
  text += shownText(driveDescription(drive.root, facts));
  if (!facts.contents.empty()) text += ", contents: " + shownText(facts.contents);
  text += yes ? "\nWriting: " : "\nWould write: ";
  text += toWrite + "\n";
  if (!yes) text += "Nothing was written; add --yes to do it.\n";
  err << text << std::flush;
}

}  // namespace omniset
