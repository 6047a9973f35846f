#include "media/drive_list.h"

#include "core/trace.h"
#include "install/router_record.h"

namespace omniset {

namespace {

char upperFirst(const std::string& text) {
  if (text.empty()) return 0;
  const char first = text.front();
  return first >= 'a' && first <= 'z' ? static_cast<char>(first - 'a' + 'A') : first;
}

}  // namespace

std::vector<DriveEntry> enumerateDrives(Volumes& volumes) {
  const char systemDrive = upperFirst(volumes.systemDirectory());
  std::vector<DriveEntry> drives;
  for (const std::string& root : volumes.driveStrings()) {
    const auto type = static_cast<std::int32_t>(volumes.driveType(root));
    if (type != kRemovableDrive && type != kFixedDrive) continue;
    const char letter = upperFirst(root);
    if (letter == systemDrive || letter == 'A') continue;
    traceLine("drive: " + root);
    drives.push_back({root, type});
  }
  return drives;
}

}  // namespace omniset
