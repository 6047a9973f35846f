#include "cli/package_folder.h"

#include <filesystem>
#include <system_error>

#include "cli/bad_input.h"
#include "core/shown_text.h"
#include "packages/folder_listing.h"

namespace omniset {

namespace {

void checkFolder(const std::string& folder) {
  std::error_code error;
  const std::string shown = "'" + shownText(folder) + "'";
  if (!std::filesystem::exists(folder, error)) {
    throw BadInput("There is no folder " + shown + ": check its path.");
  }
  if (!std::filesystem::is_directory(folder, error)) {
    throw BadInput(shown + " is not a folder: give the folder that holds the .bdl files.");
  }
  const std::filesystem::directory_iterator readable(folder, error);
  if (error) {
    throw BadInput("The folder " + shown + " cannot be read (" + shownText(error.message()) +
                   "): check its permissions.");
  }
}

}  // namespace

PackageFolder::PackageFolder(const std::string& folder) {
  checkFolder(folder);
  catalogue_.scan(folder);
  const std::vector<std::string> files = listPackageFiles(folder);
  for (const std::string& file : files) {
    if (catalogue_.findByFileName(file) < 0) unreadable_.push_back(file);
  }
  if (files.empty()) {
    throw BadInput("There are no packages in '" + shownText(folder) +
                   "': give the folder that holds the .bdl files.");
  }
  if (catalogue_.count() == 0) {
    throw BadInput("None of the .bdl files in '" + shownText(folder) +
                   "' is a readable package: fetch them again. --trace shows what is wrong.");
  }
}

void warnOfUnreadable(const PackageFolder& folder, std::ostream& err) {
  for (const std::string& file : folder.unreadable()) {
    err << "Warning: '" + shownText(file) +
               "' is not a readable package and is left out. --trace shows what is wrong.\n";
  }
}

}  // namespace omniset
