#include "fat_image.h"

#include <algorithm>

#include "payload/loader/common/numbers.h"

namespace omniset::loader::test {

FatImage::FatImage(FakeDrive& drive, const FatShape& shape) : drive_(drive), shape_(shape) {
  const std::uint32_t sectors = sectorOf(2) - shape.hidden + shape.clusters * shape.clusterSectors;
  drive.sectors = shape.hidden + sectors;
  SectorBytes& bytes = bootSector();
  putNumber(&bytes[11], std::uint16_t{512});
  bytes[13] = static_cast<std::uint8_t>(shape.clusterSectors);
  putNumber(&bytes[14], static_cast<std::uint16_t>(shape.reserved));
  bytes[16] = static_cast<std::uint8_t>(shape.tables);
  putNumber(&bytes[17], static_cast<std::uint16_t>(shape.rootEntries));
  putNumber(&bytes[19], static_cast<std::uint16_t>(sectors < 65536 ? sectors : 0));
  putNumber(&bytes[22], static_cast<std::uint16_t>(tableSectors()));
  putNumber(&bytes[28], shape.hidden);
  putNumber(&bytes[32], sectors < 65536 ? 0 : sectors);
  putNumber(&bytes[39], std::uint32_t{0x1234ABCD});
}

void FatImage::addEntry(const std::string& name, std::uint8_t attributes, std::uint32_t cluster,
                        std::uint32_t size) {
  std::uint8_t* const entry = &drive_.at(rootAt() + entries_ / 16)[entries_ % 16 * 32];
  ++entries_;
  std::copy_n(name.begin(), 11, entry);
  entry[11] = attributes;
  putNumber(entry + 26, static_cast<std::uint16_t>(cluster));
  putNumber(entry + 28, size);
}

void FatImage::addFile(const std::string& name, const std::vector<std::uint8_t>& content,
                       const std::vector<std::uint32_t>& clusters) {
  addEntry(name, kPlainFile, clusters.empty() ? 0 : clusters.front(),
           static_cast<std::uint32_t>(content.size()));
  const std::size_t size = shape_.clusterSectors * kSectorSize;
  for (std::size_t i = 0; i < clusters.size(); ++i) {
    setNext(clusters[i], i + 1 < clusters.size() ? clusters[i + 1] : endMark());
    const auto from = content.begin() + static_cast<std::ptrdiff_t>(i * size);
    const std::size_t count = std::min(size, content.size() - i * size);
    drive_.write(sectorOf(clusters[i]), {from, from + static_cast<std::ptrdiff_t>(count)});
  }
}

void FatImage::setNext(std::uint32_t cluster, std::uint32_t next) {
  if (!isFat12()) {
    tableByte(cluster * 2) = static_cast<std::uint8_t>(next);
    tableByte(cluster * 2 + 1) = static_cast<std::uint8_t>(next >> 8);
    return;
  }
  // Two entries share three bytes.
  const std::uint32_t place = cluster / 2 * 3;
  if (cluster % 2 == 0) {
    tableByte(place) = static_cast<std::uint8_t>(next);
    std::uint8_t& middle = tableByte(place + 1);
    middle = static_cast<std::uint8_t>((middle & 0xF0) | next >> 8);
  } else {
    std::uint8_t& middle = tableByte(place + 1);
    middle = static_cast<std::uint8_t>((middle & 0x0F) | next << 4);
    tableByte(place + 2) = static_cast<std::uint8_t>(next >> 4);
  }
}

std::uint32_t FatImage::sectorOf(std::uint32_t cluster) const {
  return rootAt() + (shape_.rootEntries + 15) / 16 + (cluster - 2) * shape_.clusterSectors;
}

std::uint32_t FatImage::tableSectors() const {
  const std::uint32_t entries = shape_.clusters + 2;
  const std::uint32_t bytes = isFat12() ? (entries * 3 + 1) / 2 : entries * 2;
  return (bytes + kSectorSize - 1) / kSectorSize;
}

std::uint32_t FatImage::rootAt() const {
  return shape_.hidden + shape_.reserved + shape_.tables * tableSectors();
}

std::uint8_t& FatImage::tableByte(std::uint32_t place) {
  return drive_.at(shape_.hidden + shape_.reserved + place / kSectorSize)[place % kSectorSize];
}

std::vector<std::uint8_t> contentOf(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i + i / 509 * 7 + 1);
  return bytes;
}

}  // namespace omniset::loader::test
