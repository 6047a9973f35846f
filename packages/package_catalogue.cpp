#include "packages/package_catalogue.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "core/file.h"
#include "core/format_text.h"
#include "core/path.h"
#include "core/trace.h"
#include "packages/folder_listing.h"
#include "packages/package_reader.h"
#include "packages/package_sections.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

int measure(std::FILE* file) {
  if (std::fseek(file, 0, SEEK_END) != 0) return 0;
  const long size = std::ftell(file);
  return size < 0 || size > std::numeric_limits<int>::max() ? 0 : static_cast<int>(size);
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  const char* separator = "";
  for (const std::string& part : parts) {
    text.append(separator).append(part);
    separator = ", ";
  }
  return text;
}

std::string describe(const PackageDependency& dependency) {
  const std::string lowest = versionText(dependency.minVersion);
  if (dependency.minVersion == dependency.maxVersion) {
    return formatText("%s (%s)", dependency.name.c_str(), lowest.c_str());
  }
  return formatText("%s (%s - %s)", dependency.name.c_str(), lowest.c_str(),
                    versionText(dependency.maxVersion));
}

}  // namespace

void PackageCatalogue::scan(const std::string& folder) {
  rows_.clear();
  records_.clear();
  cursor_ = -1;
  folder_ = folder;
  status_.show("Looking for packages in " + folder);
  const std::vector<std::string> fileNames = listPackageFiles(folder);
  if (fileNames.empty()) {
    status_.show("No packages in this directory");
    return;
  }
  loadAll(fileNames);
  showMissing();
  status_.show(formatText("Loaded %d package(s)", count()));
}

void PackageCatalogue::loadAll(const std::vector<std::string>& fileNames) {
  for (const std::string& fileName : fileNames) {
    status_.show("Loading " + fileName);
    try {
      addPack(fileName);
    } catch (const std::exception& failure) {
      traceLine(std::string("EXC loading packages: ") + failure.what());
    }
  }
}

void PackageCatalogue::showMissing() {
  for (int index = 0; index < count(); ++index) {
    const std::string missing = checkDependencies(index);
    if (missing.empty()) continue;
    rows_.setImage(index, kUnmetDependencyImage);
    rows_.setText(index, kDescriptionColumn, missing);
  }
}

// The row appears while the file is read, so a file that turns out to be unusable behind its header
// leaves a row without a record. Later records insert theirs before it.
void PackageCatalogue::addPack(const std::string& fileName) {
  const int row = count();
  const std::string path = joinPath(folder_, fileName);
  const FilePtr file = openFile(path, "rb");
  if (!file) {
    traceLine("addPack: fopen() fail (" + path + ")");
    return;
  }
  Reader reader(kPackageMagic, file.get());
  wantMetadata(reader);

  std::optional<PackageHeader> header = readPackageHeader(reader);
  if (!header) return;
  rows_.insertRow(row, header->name);
  rows_.setText(row, kVersionColumn, versionText(header->version));

  std::optional<std::string> description = readDescription(reader);
  if (!description) return;
  rows_.setText(row, kDescriptionColumn, *description);

  PackageRecord record;
  record.dependencies = readDependencies(reader);
  record.version = header->version;
  record.name = std::move(header->name);
  record.description = std::move(*description);
  record.fileName = fileName;
  record.size = measure(file.get());
  records_.push_back(std::move(record));
}

int PackageCatalogue::findProvider(const PackageDependency& dependency) {
  int found = findByName(dependency.name, true);
  while (found >= 0 && !dependency.accepts(record(found).version)) {
    found = findByName(dependency.name, false);
  }
  return found;
}

std::string PackageCatalogue::checkDependencies(int index) {
  PackageRecord& package = records_.at(toPosition(index));
  package.providers.clear();
  package.missing.clear();
  for (PackageDependency& dependency : package.dependencies) {
    if (dependency.maxVersion == 0) dependency.maxVersion = kAnyVersion;
    const int provider = findProvider(dependency);
    if (provider >= 0) {
      package.providers.push_back(provider);
    } else {
      package.missing.push_back(dependency.name);
    }
  }
  package.unresolved = !package.missing.empty();
  return package.unresolved ? "Missing: " + joined(package.missing) : std::string();
}

std::string PackageCatalogue::dependencyText(int index) const {
  const PackageRecord& package = record(index);
  std::vector<std::string> parts;
  for (const PackageDependency& dependency : package.dependencies) {
    parts.push_back(describe(dependency));
  }
  return package.name + " depends on " + (parts.empty() ? "nothing" : joined(parts));
}

int PackageCatalogue::findByFileName(const std::string& fileName) const {
  const auto found = std::find_if(records_.begin(), records_.end(),
                                  [&](const auto& each) { return each.fileName == fileName; });
  return found == records_.end() ? -1 : static_cast<int>(found - records_.begin());
}

int PackageCatalogue::findByName(const std::string& name, bool restart) {
  for (cursor_ = restart ? 0 : cursor_ + 1; cursor_ < count(); ++cursor_) {
    if (record(cursor_).name == name) return cursor_;
  }
  cursor_ = count() - 1;  // a search that goes on finds nothing either
  return -1;
}

int PackageCatalogue::sizeOf(const std::string& fileName) const {
  const int index = findByFileName(fileName);
  return index < 0 ? 0 : record(index).size;
}

std::vector<std::string> PackageCatalogue::installOrder(
    const std::vector<std::string>& selectedFileNames) {
  for (PackageRecord& package : records_) package.visited = false;
  std::vector<std::string> order;
  for (const std::string& fileName : selectedFileNames) {
    const int index = findByFileName(fileName);
    if (index >= 0) visit(index, order);
  }
  return order;
}

// Walks with a stack of its own: a folder can hold a chain of dependencies of any length.
void PackageCatalogue::visit(int index, std::vector<std::string>& order) {
  struct Step {
    int index;
    std::size_t nextProvider;
  };
  std::vector<Step> path;
  const auto enter = [&](int which) {
    PackageRecord& package = records_.at(toPosition(which));
    if (package.visited) return;
    package.visited = true;
    path.push_back({which, 0});
  };
  enter(index);
  while (!path.empty()) {
    Step& step = path.back();
    const PackageRecord& package = record(step.index);
    if (step.nextProvider < package.providers.size()) {
      enter(package.providers[step.nextProvider++]);
    } else {
      order.push_back(package.fileName);
      path.pop_back();
    }
  }
}

}  // namespace omniset
