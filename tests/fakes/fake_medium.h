// What a fake disk holds, and what becomes of it when the power fails: changes that were not synced
// are lost or kept at random, out of order and some of them in part; what was synced stays.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "target/disk/partition_table.h"

namespace omniset::test {

// One volume of the medium: its root folder, by folded names. The contents are kept apart, as the
// names and the contents of files reach a disk separately.
struct FakeFolder {
  struct Entry {
    std::string name;
    int content = 0;
    bool isFolder = false;
  };
  std::map<std::string, Entry> entries;
};

struct FakeImage {
  std::map<std::uint64_t, Sector> sectors;      // all others are zero
  std::map<std::uint64_t, FakeFolder> volumes;  // by first sector
  std::map<int, std::string> contents;
};

class FakeMedium {
 public:
  // As the running system sees it.
  const FakeImage& now() const { return now_; }

  Sector sector(std::uint64_t number) const;
  // A write to the first sector of a volume makes it an empty one; one behind it stands for a write
  // to its tables, which takes all of its files but their first clusters.
  void writeSector(std::uint64_t number, const Sector& bytes);
  void syncSectors();

  const FakeFolder& folder(std::uint64_t volume) const;
  int newContent() { return ++lastContent_; }
  void setEntry(std::uint64_t volume, const FakeFolder::Entry& entry);
  void removeEntry(std::uint64_t volume, const std::string& name);
  void writeContent(int content, std::size_t at, const std::string& bytes);
  void emptyContent(int content);
  void syncContent(int content);
  void syncFiles();

  // Everything that is not synced is decided about.
  void cutPower(unsigned seed);

 private:
  enum class Kind { kSector, kEntry, kNoEntry, kContent, kNoContent };
  struct Change {
    Kind kind;
    std::uint64_t place = 0;  // sector or volume
    int content = 0;
    std::size_t at = 0;  // in the content
    Sector sector{};
    FakeFolder::Entry entry;
    std::string bytes;  // of the content, or the name that goes
  };

  static void apply(FakeImage& image, const Change& change);
  static void applySector(FakeImage& image, std::uint64_t number, const Sector& bytes);
  static void loseTables(FakeImage& image, const FakeFolder& folder);
  void make(Change change);
  template <class Which>
  void sync(Which which);

  FakeImage now_;
  FakeImage synced_;
  std::vector<Change> pending_;
  int lastContent_ = 0;
};

}  // namespace omniset::test
