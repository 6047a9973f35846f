// A FAT12 or FAT16 volume, and one file of its root directory at a time. Whatever its sectors hold:
// what is wrong fails the loader, and everything comes to an end.
#pragma once

#include <cstdint>

#include "payload/loader/disk/sectors.h"

namespace omniset::loader {

class FatVolume {
 public:
  // With the volume's first sector, whose hidden sectors say where on the drive it lies.
  void open(const SectorBytes& bootSector);

  // A name of at most eight characters, and three behind a point, in letters of any case. It has to
  // stay as long as the file is read.
  void openFile(const char* name);

  // Puts the next bytes to kTransferAt, at most kTransferRoom. Returns their number: 0 at the end.
  // What follows them there up to the end of their cluster changes too.
  std::uint32_t readFile();

 private:
  void load(std::uint32_t sector);
  const std::uint8_t* findEntry(const std::uint8_t* shortName);
  std::uint32_t placeOfEntry(std::uint32_t cluster) const;
  std::uint8_t tableByte(std::uint32_t place);
  bool isFat12() const;
  std::uint32_t next(std::uint32_t cluster);
  std::uint32_t clusterSize() const { return clusterSectors_ * kSectorSize; }
  bool isData(std::uint32_t cluster) const { return cluster >= 2 && cluster - 2 < clusters_; }
  void goOn();
  [[noreturn]] void failDamaged() const;

  std::uint32_t clusterSectors_ = 0;
  std::uint32_t clusters_ = 0;
  std::uint32_t rootEntries_ = 0;
  // On the drive.
  std::uint32_t tableAt_ = 0;
  std::uint32_t rootAt_ = 0;
  std::uint32_t dataAt_ = 0;

  SectorBytes sector_{};  // the last one of table and directory
  std::uint32_t loaded_ = 0;

  const char* name_ = nullptr;
  std::uint32_t cluster_ = 0;  // the next one
  std::uint32_t left_ = 0;     // bytes
};

// In the volume's first sector.
std::uint32_t serialNumberIn(const SectorBytes& bootSector);

}  // namespace omniset::loader
