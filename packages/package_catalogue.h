// The packages of one folder: what they are, what they depend on, and in which order they are
// installed. One thread uses a catalogue.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "packages/package_format.h"
#include "packages/package_view.h"

namespace omniset {

struct PackageRecord {
  std::uint32_t version = 0;
  std::string name;
  std::string fileName;     // without the folder
  int size = 0;             // of the file in bytes; 0 when it cannot be measured or told in an int
  bool unresolved = false;  // the dependency check found something missing
  std::vector<int> providers;  // the packages that satisfy the dependencies, from that check
  bool visited = false;        // used while an install order is made

  std::string description;
  std::vector<PackageDependency> dependencies;  // in file order
  std::vector<std::string> missing;             // names without a provider, from the check
};

// A record's index is also its row. Rows of files that turned out to have no usable description
// or dependencies stay behind those of the records.
class PackageCatalogue {
 public:
  // Both are the owner's and outlive the catalogue.
  PackageCatalogue(PackageRows& rows, StatusText& status) : rows_(rows), status_(status) {}

  // Forgets everything and loads the package files of a folder, in the system's order. A file that
  // cannot be read costs a trace line, never an exception.
  void scan(const std::string& folder);

  // Loads one file of the folder. A file that cannot be opened, or that does not begin with a
  // package header and a description, is left out without an exception. Raises BadFile for a
  // malformed file and std::out_of_range for an empty description.
  void addPack(const std::string& fileName);

  // Finds the packages that a package depends on among those of the folder. Empty when all are
  // there, else "Missing: " and the names of the others.
  std::string checkDependencies(int index);

  // "routing depends on system (2.9.7 - any)". Uses versionText().
  std::string dependencyText(int index) const;

  // The first record with this file name, or -1. Case matters.
  int findByFileName(const std::string& fileName) const;

  // The next record with this package name, or -1: from the first record on with `restart`, else
  // from behind the previous find on. There is one place to continue from, whoever searches.
  int findByName(const std::string& name, bool restart);

  // The files to transfer for a selection: each selected package once, behind the packages that it
  // depends on, themselves behind theirs (in a circle of dependencies, as far as that can be).
  // File names that the catalogue does not know are left out. Needs checkDependencies() before.
  std::vector<std::string> installOrder(const std::vector<std::string>& selectedFileNames);

  // These raise std::out_of_range for an index that is none.
  const std::string& fileNameAt(int index) const { return record(index).fileName; }
  const PackageRecord& record(int index) const { return records_.at(toPosition(index)); }

  // The size in bytes of the record with this file name, or 0.
  int sizeOf(const std::string& fileName) const;

  int count() const { return static_cast<int>(records_.size()); }
  const std::vector<PackageRecord>& records() const { return records_; }
  const std::string& folder() const { return folder_; }

 private:
  static std::size_t toPosition(int index) { return static_cast<std::size_t>(index); }

  void loadAll(const std::vector<std::string>& fileNames);
  void showMissing();
  int findProvider(const PackageDependency& dependency);
  void visit(int index, std::vector<std::string>& order);

  PackageRows& rows_;
  StatusText& status_;
  std::string folder_;
  std::vector<PackageRecord> records_;
  int cursor_ = -1;  // where findByName() found something last
};

}  // namespace omniset
