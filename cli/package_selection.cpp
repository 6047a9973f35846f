#include "cli/package_selection.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <set>

#include "cli/bad_input.h"
#include "cli/package_table.h"
#include "core/file.h"
#include "core/shown_text.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

std::string nameList(const PackageCatalogue& catalogue) {
  std::set<std::string> names;
  for (const PackageRecord& package : catalogue.records()) names.insert(shownText(package.name));
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

// The package that is meant by a file name, or by a package name the newest one.
const PackageRecord& packageMeant(const std::string& name, const PackageCatalogue& catalogue) {
  const int byFile = catalogue.findByFileName(name);
  if (byFile >= 0) return catalogue.record(byFile);
  const PackageRecord* newest = nullptr;
  for (const PackageRecord& package : catalogue.records()) {
    if (package.name == name && (!newest || package.version > newest->version)) newest = &package;
  }
  if (newest) return *newest;
  throw BadInput("There is no package '" + shownText(name) + "' in '" +
                 shownText(catalogue.folder()) + "': select among " + nameList(catalogue) + ".");
}

std::vector<std::string> selectedFiles(const PackageChoice& choice,
                                       const PackageCatalogue& catalogue) {
  std::vector<std::string> files;
  if (choice.select.empty()) {
    for (const PackageRecord& package : catalogue.records()) files.push_back(package.fileName);
  }
  for (const std::string& name : choice.select) {
    files.push_back(packageMeant(name, catalogue).fileName);
  }
  return files;
}

// Which versions of it the folder has, none of which will do; empty when it has none.
std::string versionsThere(const std::string& name, const PackageCatalogue& catalogue) {
  std::string versions;
  for (const PackageRecord& package : catalogue.records()) {
    if (package.name != name) continue;
    versions += (versions.empty() ? "" : ", ") + std::string(versionText(package.version));
  }
  return versions;
}

std::string missingSentence(const PackageRecord& package, const PackageDependency& dependency,
                            const PackageCatalogue& catalogue) {
  const std::string versions = versionsThere(dependency.name, catalogue);
  const std::string name = shownText(package.name);
  std::string text = "Package " + name + " needs " + dependencyShown(dependency) +
                     ", which is not in '" + shownText(catalogue.folder()) + "'";
  if (!versions.empty()) text += " (there is only " + versions + ")";
  return text + ": put that package into the folder, or leave " + name + " out.";
}

bool isProvided(const PackageDependency& dependency, const PackageCatalogue& catalogue) {
  for (const PackageRecord& package : catalogue.records()) {
    if (package.name == dependency.name && dependency.accepts(package.version)) return true;
  }
  return false;
}

void checkMissing(const std::vector<std::string>& files, const PackageCatalogue& catalogue) {
  std::string sentences;
  for (const std::string& file : files) {
    const PackageRecord& package = catalogue.record(catalogue.findByFileName(file));
    for (const PackageDependency& dependency : package.dependencies) {
      if (isProvided(dependency, catalogue)) continue;
      if (!sentences.empty()) sentences += "\n";
      sentences += missingSentence(package, dependency, catalogue);
    }
  }
  if (!sentences.empty()) throw BadInput(sentences);
}

// Only a regular file can be read again and again, and has a length.
bool isReadable(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  const FilePtr file = openFile(path, "rb");
  if (!file) return false;
  std::fgetc(file.get());
  return std::ferror(file.get()) == 0;
}

void warnOfVersions(const std::vector<std::string>& files, const PackageCatalogue& catalogue,
                    std::vector<std::string>& warnings) {
  std::map<std::string, std::string> known;
  for (const std::string& file : files) {
    const std::string& name = catalogue.record(catalogue.findByFileName(file)).name;
    const auto [other, isFirst] = known.emplace(name, file);
    if (isFirst) continue;
    warnings.push_back("Warning: several versions of " + shownText(name) + " will be installed (" +
                       shownText(other->second) + " and " + shownText(file) +
                       "): keep only one of them in the folder.");
  }
}

}  // namespace

PackageSelection selectPackages(const PackageChoice& choice, PackageCatalogue& catalogue) {
  PackageSelection selection;
  selection.files = catalogue.installOrder(selectedFiles(choice, catalogue));
  checkMissing(selection.files, catalogue);
  for (const std::string& file : selection.files) {
    const PackageRecord& package = catalogue.record(catalogue.findByFileName(file));
    selection.sizes.push_back(package.size);
    selection.shown.push_back(shownText(package.name) + " " + versionText(package.version));
  }
  warnOfVersions(selection.files, catalogue, selection.warnings);
  return selection;
}

std::string PackageSelection::list() const {
  std::string text;
  for (const std::string& name : shown) text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::int64_t ownScriptSize(const std::string& path) {
  if (!isReadable(path)) {
    throw BadInput("The script '" + shownText(path) +
                   "' cannot be read: name a file, and check its path and its permissions.");
  }
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

}  // namespace omniset
