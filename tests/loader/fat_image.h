// A FAT volume on a drive, put together entry by entry, right or wrong.
#pragma once

#include <string>

#include "fake_drive.h"

namespace omniset::loader::test {

struct FatShape {
  std::uint32_t clusters = 1000;  // from 4085 on the entries have 16 bits
  std::uint32_t clusterSectors = 1;
  std::uint32_t rootEntries = 64;
  std::uint32_t tables = 2;
  std::uint32_t reserved = 1;
  std::uint32_t hidden = 0;
};

inline constexpr std::uint8_t kLabel = 0x08;
inline constexpr std::uint8_t kLongName = 0x0F;
inline constexpr std::uint8_t kDirectory = 0x10;
inline constexpr std::uint8_t kPlainFile = 0x20;

class FatImage {
 public:
  FatImage(FakeDrive& drive, const FatShape& shape);

  SectorBytes& bootSector() { return drive_.at(shape_.hidden); }
  // The name as it is stored, with 11 characters, to the next entry of the root directory.
  void addEntry(const std::string& name, std::uint8_t attributes, std::uint32_t cluster,
                std::uint32_t size);
  // With its content in these clusters, which get a chain that ends.
  void addFile(const std::string& name, const std::vector<std::uint8_t>& content,
               const std::vector<std::uint32_t>& clusters);
  void setNext(std::uint32_t cluster, std::uint32_t next);
  std::uint32_t sectorOf(std::uint32_t cluster) const;
  std::uint32_t endMark() const { return isFat12() ? 0xFFF : 0xFFFF; }

 private:
  bool isFat12() const { return shape_.clusters < 4085; }
  std::uint32_t tableSectors() const;
  std::uint32_t rootAt() const;
  std::uint8_t& tableByte(std::uint32_t place);

  FakeDrive& drive_;
  FatShape shape_;
  std::uint32_t entries_ = 0;
};

// So many bytes that differ from sector to sector.
std::vector<std::uint8_t> contentOf(std::size_t size);

}  // namespace omniset::loader::test
