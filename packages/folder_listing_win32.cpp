#include <windows.h>

#include "core/path.h"
#include "packages/folder_listing.h"

namespace omniset {

std::vector<std::string> listPackageFiles(const std::string& folder) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA found;
  const HANDLE search = FindFirstFileA(joinPath(folder, "*.bdl").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    names.emplace_back(found.cFileName);
  } while (FindNextFileA(search, &found));
  FindClose(search);
  return names;
}

}  // namespace omniset
