#include "tests/fakes/fake_medium.h"

#include <algorithm>
#include <utility>

#include "core/file_name.h"

namespace omniset::test {

namespace {

constexpr std::size_t kClusterSize = 2048;

}  // namespace

Sector FakeMedium::sector(std::uint64_t number) const {
  const auto found = now_.sectors.find(number);
  return found == now_.sectors.end() ? Sector{} : found->second;
}

const FakeFolder& FakeMedium::folder(std::uint64_t volume) const {
  static const FakeFolder kEmpty;
  const auto found = now_.volumes.find(volume);
  return found == now_.volumes.end() ? kEmpty : found->second;
}

void FakeMedium::writeSector(std::uint64_t number, const Sector& bytes) {
  make({Kind::kSector, number, 0, 0, bytes, {}, {}});
}

void FakeMedium::setEntry(std::uint64_t volume, const FakeFolder::Entry& entry) {
  make({Kind::kEntry, volume, 0, 0, {}, entry, {}});
}

void FakeMedium::removeEntry(std::uint64_t volume, const std::string& name) {
  make({Kind::kNoEntry, volume, 0, 0, {}, {}, name});
}

void FakeMedium::writeContent(int content, std::size_t at, const std::string& bytes) {
  make({Kind::kContent, 0, content, at, {}, {}, bytes});
}

void FakeMedium::emptyContent(int content) {
  make({Kind::kNoContent, 0, content, 0, {}, {}, {}});
}

void FakeMedium::make(Change change) {
  apply(now_, change);
  pending_.push_back(std::move(change));
}

void FakeMedium::apply(FakeImage& image, const Change& change) {
  switch (change.kind) {
    case Kind::kSector:
      return applySector(image, change.place, change.sector);
    case Kind::kEntry:
      image.volumes[change.place].entries[foldedFileName(change.entry.name)] = change.entry;
      return;
    case Kind::kNoEntry:
      image.volumes[change.place].entries.erase(foldedFileName(change.bytes));
      return;
    case Kind::kContent: {
      std::string& content = image.contents[change.content];
      content.resize(std::max(content.size(), change.at + change.bytes.size()));
      content.replace(change.at, change.bytes.size(), change.bytes);
      return;
    }
    case Kind::kNoContent:
      image.contents[change.content].clear();
      return;
  }
}

void FakeMedium::applySector(FakeImage& image, std::uint64_t number, const Sector& bytes) {
  if (bytes == Sector{}) {
    image.sectors.erase(number);
  } else {
    image.sectors[number] = bytes;
  }
  image.volumes.erase(number);
  for (const auto& [first, folder] : image.volumes) {
    if (number > first) loseTables(image, folder);
  }
}

// What is left of files is what the folder itself leads to.
void FakeMedium::loseTables(FakeImage& image, const FakeFolder& folder) {
  for (const auto& [name, entry] : folder.entries) {
    std::string& content = image.contents[entry.content];
    content.resize(std::min(content.size(), kClusterSize));
  }
}

template <class Which>
void FakeMedium::sync(Which which) {
  std::erase_if(pending_, [&](const Change& change) {
    if (which(change)) apply(synced_, change);
    return which(change);
  });
}

void FakeMedium::syncSectors() {
  sync([](const Change& change) { return change.kind == Kind::kSector; });
}

void FakeMedium::syncFiles() {
  sync([](const Change& change) { return change.kind != Kind::kSector; });
}

// Only the bytes: the name of the file may still be lost.
void FakeMedium::syncContent(int content) {
  sync([&](const Change& change) {
    return (change.kind == Kind::kContent || change.kind == Kind::kNoContent) &&
           change.content == content;
  });
}

void FakeMedium::cutPower(unsigned seed) {
  std::mt19937 random(seed);
  // In order, in a random order, all but a few, or few.
  if (random() % 2) std::shuffle(pending_.begin(), pending_.end(), random);
  const std::uint_fast32_t percentKept = random() % 101;
  for (Change& change : pending_) {
    if (random() % 100 >= percentKept) continue;
    if (change.kind == Kind::kContent && random() % 4 == 0) {
      change.bytes.resize(random() % (change.bytes.size() + 1));
    }
    apply(synced_, change);
  }
  pending_.clear();
  now_ = synced_;
}

}  // namespace omniset::test
