#include "payload/loader/disk/fat_volume.h"

#include "payload/loader/common/console.h"
#include "payload/loader/common/letters.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/numbers.h"

namespace omniset::loader {
namespace {

// Offsets in the first sector.
constexpr std::size_t kBytesOfSector = 11;
constexpr std::size_t kClusterSectors = 13;
constexpr std::size_t kReservedSectors = 14;
constexpr std::size_t kTables = 16;
constexpr std::size_t kRootEntries = 17;
constexpr std::size_t kSectors = 19;  // 0: the large number counts
constexpr std::size_t kTableSectors = 22;
constexpr std::size_t kHiddenSectors = 28;
constexpr std::size_t kLargeSectors = 32;
constexpr std::size_t kSerialNumber = 39;

// Offsets in an entry of the directory.
constexpr std::size_t kNameLength = 11;
constexpr std::size_t kBaseLength = 8;
constexpr std::size_t kAttributes = 11;
constexpr std::size_t kFirstCluster = 26;
constexpr std::size_t kFileSize = 28;
constexpr std::uint32_t kEntrySize = 32;
constexpr std::uint32_t kEntriesOfSector = kSectorSize / kEntrySize;

constexpr std::uint8_t kDeleted = 0xE5;
constexpr std::uint8_t kNotAFile = 0x18;  // a label, a part of a long name, or a directory

// Numbers of clusters.
constexpr std::uint32_t kFirstOfFat16 = 4085;
constexpr std::uint32_t kFirstOfFat32 = 65525;

// In entries of the table, from here on: those of FAT12 as if they were of FAT16.
constexpr std::uint32_t kLastCluster = 0xFFF8;

constexpr std::uint32_t kTransferSectors = kTransferRoom / kSectorSize;

std::uint32_t u16(const std::uint8_t* bytes) {
  return numberAt<std::uint16_t>(bytes);
}

std::uint32_t u32(const std::uint8_t* bytes) {
  return numberAt<std::uint32_t>(bytes);
}

// As directories have it. Returns false for a name that no file has.
bool toShortName(const char* name, std::uint8_t* shortName) {
  std::size_t at = 0;
  std::size_t end = kBaseLength;
  for (std::size_t i = 0; i < kNameLength; ++i) shortName[i] = ' ';
  for (char c = *name; c != 0; c = *++name) {
    if (c == '.' && end == kBaseLength) {
      at = kBaseLength;
      end = kNameLength;
      continue;
    }
    if (at == end) return false;
    shortName[at++] = static_cast<std::uint8_t>(capital(c));
  }
  return shortName[0] != kDeleted;
}

bool isEqual(const std::uint8_t* a, const std::uint8_t* b, std::size_t count) {
  while (count > 0 && *a++ == *b++) --count;
  return count == 0;
}

}  // namespace

void FatVolume::open(const SectorBytes& bootSector) {
  const std::uint8_t* const bytes = bootSector.data();
  const std::uint32_t reserved = u16(bytes + kReservedSectors);
  const std::uint32_t tableSectors = u16(bytes + kTableSectors);
  std::uint32_t sectors = u16(bytes + kSectors);
  if (sectors == 0) sectors = u32(bytes + kLargeSectors);
  clusterSectors_ = bytes[kClusterSectors];
  rootEntries_ = u16(bytes + kRootEntries);
  tableAt_ = u32(bytes + kHiddenSectors) + reserved;
  const std::uint32_t tablesSize = bytes[kTables] * tableSectors;
  rootAt_ = tableAt_ + tablesSize;
  const std::uint32_t rootSize = (rootEntries_ + kEntriesOfSector - 1) / kEntriesOfSector;
  dataAt_ = rootAt_ + rootSize;
  const std::uint32_t before = reserved + tablesSize + rootSize;
  clusters_ = 0;
  if (u16(bytes + kBytesOfSector) == kSectorSize && reserved != 0 && rootSize != 0 &&
      clusterSectors_ != 0 && (clusterSectors_ & (clusterSectors_ - 1)) == 0 && sectors > before) {
    clusters_ = (sectors - before) / clusterSectors_;
  }
  // Whose last entry has to be in the table. No table has none.
  if (clusters_ == 0 || clusters_ >= kFirstOfFat32 || tablesSize == 0 ||
      placeOfEntry(clusters_ + 1) + 1 >= tableSectors * kSectorSize) {
    fail("This disk has no file system of the kinds FAT12 and FAT16.");
  }
  loaded_ = 0;
}

bool FatVolume::isFat12() const {
  return clusters_ < kFirstOfFat16;
}

void FatVolume::openFile(const char* name) {
  std::uint8_t shortName[kNameLength];
  const std::uint8_t* const entry = toShortName(name, shortName) ? findEntry(shortName) : nullptr;
  if (entry == nullptr) fail(name, " is not on this disk.");
  name_ = name;
  cluster_ = u16(entry + kFirstCluster);
  left_ = u32(entry + kFileSize);
  if (left_ > clusters_ * clusterSize() || (left_ > 0 && !isData(cluster_))) failDamaged();
}

const std::uint8_t* FatVolume::findEntry(const std::uint8_t* shortName) {
  for (std::uint32_t i = 0; i < rootEntries_; ++i) {
    load(rootAt_ + i / kEntriesOfSector);
    const std::uint8_t* const entry = &sector_[i % kEntriesOfSector * kEntrySize];
    if (*entry == 0) break;
    if ((entry[kAttributes] & kNotAFile) == 0 && isEqual(entry, shortName, kNameLength))
      return entry;
  }
  return nullptr;
}

// Clusters that follow each other are read at once.
std::uint32_t FatVolume::readFile() {
  const std::uint32_t before = left_;
  std::uint32_t filled = 0;
  while (left_ > 0 && filled < kTransferSectors) {
    const std::uint32_t first = cluster_;
    const std::uint32_t start = filled;
    std::uint32_t following = first;
    do {
      filled += clusterSectors_;
      ++following;
      goOn();
    } while (left_ > 0 && filled < kTransferSectors && cluster_ == following);
    readSectors(dataAt_ + (first - 2) * clusterSectors_, filled - start,
                kTransferAt + start * kSectorSize);
  }
  return before - left_;
}

// Past the next cluster. The chain has to end where the file does, so that none is taken for one
// that goes round in circles.
void FatVolume::goOn() {
  left_ -= left_ < clusterSize() ? left_ : clusterSize();
  cluster_ = next(cluster_);
  if (left_ > 0 ? !isData(cluster_) : cluster_ < kLastCluster) failDamaged();
}

// From the begin of the table, in bytes.
std::uint32_t FatVolume::placeOfEntry(std::uint32_t cluster) const {
  return cluster + (isFat12() ? cluster / 2 : cluster);
}

std::uint8_t FatVolume::tableByte(std::uint32_t place) {
  load(tableAt_ + place / kSectorSize);
  return sector_[place % kSectorSize];
}

std::uint32_t FatVolume::next(std::uint32_t cluster) {
  const std::uint32_t place = placeOfEntry(cluster);
  std::uint32_t entry = tableByte(place);
  entry |= static_cast<std::uint32_t>(tableByte(place + 1)) << 8;
  if (!isFat12()) return entry;
  entry = cluster % 2 != 0 ? entry >> 4 : entry & 0xFFF;
  return entry < (kLastCluster & 0xFFF) ? entry : entry | 0xF000;
}

// Sector 0 of a drive is of no directory or table.
void FatVolume::load(std::uint32_t sector) {
  if (sector == loaded_) return;
  readSector(sector, sector_);
  loaded_ = sector;
}

void FatVolume::failDamaged() const {
  fail(name_, " is damaged on this disk.");
}

std::uint32_t serialNumberIn(const SectorBytes& bootSector) {
  return u32(&bootSector[kSerialNumber]);
}

}  // namespace omniset::loader
