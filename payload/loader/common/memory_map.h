// Which memory above 1 MB may be used, below 4 GB.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace omniset::loader {

// The end is the first address behind it.
struct MemoryRange {
  std::uint32_t start = 0;
  std::uint32_t end = 0;

  std::uint32_t size() const { return end - start; }
};

// A piece of memory as the BIOS describes it, each address in two halves.
struct MemoryEntry {
  std::uint32_t start = 0;
  std::uint32_t startHigh = 0;
  std::uint32_t size = 0;
  std::uint32_t sizeHigh = 0;
  std::uint32_t type = 0;
};
inline constexpr std::uint32_t kUsableMemory = 1;
inline constexpr std::uint32_t kReservedMemory = 2;

class MemoryMap {
 public:
  static constexpr std::size_t kMost = 128;

  // Entries may come in any order and overlap: what one of them reserves is not used. Of an entry
  // beyond 4 GB only what is below counts. Returns false when there is no room for more.
  bool add(const MemoryEntry& entry);
  void clear() { count_ = 0; }

  // Up to where memory is usable from this address on without a gap; the address itself when it is
  // not.
  std::uint32_t usableEnd(std::uint32_t start) const;

  // The largest usable range between both addresses, of whole pages; it may be empty.
  MemoryRange largestUsable(std::uint32_t floor, std::uint32_t ceiling) const;

 private:
  struct Piece {
    MemoryRange range;
    bool isUsable;
  };

  std::array<Piece, kMost> pieces_;
  std::size_t count_ = 0;
};

inline constexpr std::uint32_t kPage = 4096;
// Addresses of the last page are rounded to 0.
constexpr std::uint32_t roundedToPage(std::uint32_t address) {
  return (address + kPage - 1) & ~(kPage - 1);
}

}  // namespace omniset::loader
