#include "ui/workflow/package_marks.h"

#include <algorithm>

namespace omniset {

namespace {

int find(PackageCatalogue& catalogue, const std::string& reference) {
  const int byName = catalogue.findByName(reference, true);
  return byName >= 0 ? byName : catalogue.findByFileName(reference);
}

std::string referenceTo(PackageCatalogue& catalogue, int index) {
  const PackageRecord& package = catalogue.record(index);
  return find(catalogue, package.name) == index ? package.name : package.fileName;
}

// Adds what the marked packages depend on.
PackageMarks completed(PackageCatalogue& catalogue, const PackageMarks& marks) {
  PackageMarks all(marks.size());
  for (const std::string& file : filesOf(catalogue, marks)) {
    all[static_cast<std::size_t>(catalogue.findByFileName(file))] = true;
  }
  return all;
}

}  // namespace

PackageMarks marksOf(PackageCatalogue& catalogue, const std::vector<std::string>& choice) {
  PackageMarks marks(catalogue.records().size());
  for (const std::string& reference : choice) {
    const int index = find(catalogue, reference);
    if (index >= 0) marks[static_cast<std::size_t>(index)] = true;
  }
  return completed(catalogue, marks);
}

std::vector<std::string> choiceOf(PackageCatalogue& catalogue, const PackageMarks& marks,
                                  const std::vector<std::string>& before) {
  const PackageMarks all = completed(catalogue, marks);
  std::vector<std::string> choice;
  for (std::size_t index = 0; index < all.size(); ++index) {
    if (all[index]) choice.push_back(referenceTo(catalogue, static_cast<int>(index)));
  }
  std::copy_if(before.begin(), before.end(), std::back_inserter(choice),
               [&](const std::string& reference) { return find(catalogue, reference) < 0; });
  return choice;
}

std::vector<std::string> filesOf(PackageCatalogue& catalogue, const PackageMarks& marks) {
  std::vector<std::string> files;
  for (std::size_t index = 0; index < marks.size(); ++index) {
    if (marks[index]) files.push_back(catalogue.fileNameAt(static_cast<int>(index)));
  }
  return catalogue.installOrder(files);
}

std::int64_t bytesOf(const PackageCatalogue& catalogue, const std::vector<std::string>& files) {
  std::int64_t bytes = 0;
  for (const std::string& file : files) bytes += catalogue.sizeOf(file);
  return bytes;
}

int countOf(const PackageMarks& marks) {
  return static_cast<int>(std::count(marks.begin(), marks.end(), true));
}

}  // namespace omniset
