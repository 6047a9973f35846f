#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "packages/folder_listing.h"

namespace omniset {

namespace {

struct Closer {
  void operator()(DIR* folder) const { closedir(folder); }
};

bool isPackageFileName(std::string_view name) {
  constexpr std::string_view kExtension = ".bdl";
  if (name.size() < kExtension.size()) return false;
  const std::string_view end = name.substr(name.size() - kExtension.size());
  return std::equal(end.begin(), end.end(), kExtension.begin(), [](char a, char lower) {
    return a == lower || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == lower);
  });
}

// A pipe or a device has no content of its own, and to open it may wait for ever.
bool mayBeOpened(DIR* folder, const char* name) {
  struct stat status {};
  if (fstatat(dirfd(folder), name, &status, 0) != 0) return true;
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

}  // namespace

std::vector<std::string> listPackageFiles(const std::string& folder) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, Closer> entries(opendir(folder.c_str()));
  if (!entries) return names;
  while (const dirent* entry = readdir(entries.get())) {
    if (!isPackageFileName(entry->d_name)) continue;
    if (mayBeOpened(entries.get(), entry->d_name)) names.emplace_back(entry->d_name);
  }
  return names;
}

}  // namespace omniset
