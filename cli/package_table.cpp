#include "cli/package_table.h"

#include <algorithm>
#include <array>

#include "core/shown_text.h"
#include "packages/version_text.h"

namespace omniset {

namespace {

enum Column { kName, kVersion, kSize, kDependsOn, kMissing, kDescription, kColumns };

using Row = std::array<std::string, kColumns>;

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + shownText(name);
  return text.empty() ? "-" : text;
}

Row rowOf(const PackageRecord& package) {
  std::vector<std::string> dependencies;
  for (const PackageDependency& each : package.dependencies) {
    dependencies.push_back(dependencyShown(each));
  }
  return {shownText(package.name), versionText(package.version), std::to_string(package.size),
          joined(dependencies),    joined(package.missing),      shownText(package.description)};
}

std::string lineOf(const Row& row, const std::array<std::size_t, kColumns>& widths) {
  std::string line;
  for (std::size_t column = 0; column < kColumns; ++column) {
    const std::string& cell = row[column];
    if (column == kSize) line.append(widths[column] - columnsOf(cell), ' ');
    line += column == kSize ? cell : padded(cell, widths[column]);
    line += "  ";
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
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
  std::vector<Row> rows{{"Name", "Version", "Size", "Depends on", "Missing", "Description"}};
  for (const PackageRecord& package : packages) rows.push_back(rowOf(package));
  std::array<std::size_t, kColumns> widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  std::string table;
  for (const Row& row : rows) table += lineOf(row, widths);
  return table;
}

}  // namespace omniset
