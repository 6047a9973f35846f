// The drive that a loader comes from: sectors of zeros but for those that were written.
#pragma once

#include <map>
#include <vector>

#include "fake_pc.h"
#include "payload/loader/disk/sectors.h"

namespace omniset::loader::test {

struct DriveRead {
  std::uint32_t first;
  std::uint32_t count;

  bool operator==(const DriveRead&) const = default;
};

// One at a time: the loader's functions use the one that exists. Reads to the PC's memory.
class FakeDrive {
 public:
  explicit FakeDrive(FakePc& pc);
  ~FakeDrive();
  FakeDrive(const FakeDrive&) = delete;
  FakeDrive& operator=(const FakeDrive&) = delete;

  std::uint32_t sectors = 0;     // reading those behind is a fault of the test or the code
  std::vector<DriveRead> reads;  // of whole runs to memory

  SectorBytes& at(std::uint32_t sector) { return written_[sector]; }
  void write(std::uint32_t first, const std::vector<std::uint8_t>& bytes);

  void read(std::uint32_t first, std::uint32_t count, std::uint32_t to);
  void readOne(std::uint32_t number, SectorBytes& to) const;

 private:
  FakePc& pc_;
  std::map<std::uint32_t, SectorBytes> written_;
};

}  // namespace omniset::loader::test
