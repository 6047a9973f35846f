#include "payload/loader/common/memory_map.h"

namespace omniset::loader {

bool MemoryMap::add(const MemoryEntry& entry) {
  if (entry.startHigh != 0 || (entry.size == 0 && entry.sizeHigh == 0)) return true;
  if (count_ == kMost) return false;
  std::uint32_t end = entry.start + entry.size;
  if (entry.sizeHigh != 0 || end < entry.start) end = ~std::uint32_t{0};
  pieces_[count_++] = {{entry.start, end}, entry.type == kUsableMemory};
  return true;
}

std::uint32_t MemoryMap::usableEnd(std::uint32_t start) const {
  std::uint32_t end = start;
  // Pieces that touch are one.
  for (bool grows = true; grows;) {
    grows = false;
    for (std::size_t i = 0; i < count_; ++i) {
      const auto& [range, isUsable] = pieces_[i];
      if (isUsable && range.start <= end && range.end > end) {
        end = range.end;
        grows = true;
      }
    }
  }
  for (std::size_t i = 0; i < count_; ++i) {
    const auto& [range, isUsable] = pieces_[i];
    if (isUsable || range.end <= start || range.start >= end) continue;
    end = range.start < start ? start : range.start;
  }
  return end;
}

MemoryRange MemoryMap::largestUsable(std::uint32_t floor, std::uint32_t ceiling) const {
  MemoryRange best{floor, floor};
  const auto consider = [&](std::uint32_t address) {
    const std::uint32_t start = roundedToPage(address);
    if (start < floor || start >= ceiling) return;
    std::uint32_t end = usableEnd(start);
    if (end > ceiling) end = ceiling;
    end &= ~(kPage - 1);
    if (end > start && end - start > best.size()) best = {start, end};
  };
  consider(floor);
  // A usable range begins where a usable piece does, or where a reserved one ends.
  for (std::size_t i = 0; i < count_; ++i) {
    const auto& [range, isUsable] = pieces_[i];
    consider(isUsable ? range.start : range.end);
  }
  return best;
}

}  // namespace omniset::loader
