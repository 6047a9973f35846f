#include "fake_drive.h"

#include <algorithm>

namespace omniset::loader {
namespace {

test::FakeDrive* drive = nullptr;

}  // namespace

void readSectors(std::uint32_t first, std::uint32_t count, std::uint32_t to) {
  drive->read(first, count, to);
}

void readSector(std::uint32_t number, SectorBytes& to) {
  drive->readOne(number, to);
}

namespace test {

FakeDrive::FakeDrive(FakePc& pc) : pc_(pc) {
  drive = this;
}

FakeDrive::~FakeDrive() {
  drive = nullptr;
}

void FakeDrive::write(std::uint32_t first, const std::vector<std::uint8_t>& bytes) {
  for (std::size_t from = 0; from < bytes.size(); from += kSectorSize) {
    const std::size_t count = std::min<std::size_t>(kSectorSize, bytes.size() - from);
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), count, at(first++).begin());
  }
}

void FakeDrive::read(std::uint32_t first, std::uint32_t count, std::uint32_t to) {
  const std::uint32_t last = to + count * kSectorSize - 1;
  if (count == 0 || to >> 16 != last >> 16) throw std::logic_error("a read across 64 KB");
  reads.push_back({first, count});
  for (std::uint32_t i = 0; i < count; ++i) {
    SectorBytes sector;
    readOne(first + i, sector);
    std::copy(sector.begin(), sector.end(), pc_.memory.begin() + to + i * kSectorSize);
  }
}

void FakeDrive::readOne(std::uint32_t number, SectorBytes& to) const {
  if (number >= sectors) throw std::logic_error("a read behind the drive's end");
  const auto found = written_.find(number);
  to = found == written_.end() ? SectorBytes{} : found->second;
}

}  // namespace test
}  // namespace omniset::loader
