#include "cli/package_table.h"

#include "cli/text_table.h"
#include "core/shown_text.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

constexpr std::size_t kSizeColumn = 2;

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + shownText(name);
  return text.empty() ? "-" : text;
}

TableRow rowOf(const PackageRecord& package) {
  std::vector<std::string> dependencies;
  for (const PackageDependency& each : package.dependencies) {
    dependencies.push_back(dependencyShown(each));
  }
  return {shownText(package.name), versionText(package.version), std::to_string(package.size),
          joined(dependencies),    joined(package.missing),      shownText(package.description)};
}

}  // namespace

std::string dependencyShown(const PackageDependency& dependency) {
  const std::string lowest = versionText(dependency.minVersion);
  const std::string highest = versionText(dependency.maxVersion);
  const std::string any = versionText(kAnyVersion);
  std::string text = shownText(dependency.name);
  if (lowest == highest) return lowest == any ? text : text + " " + lowest;
  if (highest == any) return text + " " + lowest + " or later";
  if (lowest == any) return text + " up to " + highest;
  return text + " " + lowest + " to " + highest;
}

std::string packageTable(const std::vector<PackageRecord>& packages) {
  std::vector<TableRow> rows{{"Name", "Version", "Size", "Depends on", "Missing", "Description"}};
  for (const PackageRecord& package : packages) rows.push_back(rowOf(package));
  return textTable(rows, kSizeColumn);
}

}  // namespace omniset
