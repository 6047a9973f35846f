#include "target/disk/volume_files.h"

#include <algorithm>

#include "core/file_name.h"

namespace omniset {

namespace {

constexpr std::size_t kSlice = 64 * 1024;

}  // namespace

const VolumeEntry* findFile(const std::vector<VolumeEntry>& entries, std::string_view name) {
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const VolumeEntry& entry) {
    return !entry.isFolder && isSameFileName(entry.name, name);
  });
  return found == entries.end() ? nullptr : &*found;
}

const MarkedFile* findMissing(const std::vector<VolumeEntry>& entries, const MarkedFiles& files) {
  for (const MarkedFile& file : files) {
    const VolumeEntry* entry = findFile(entries, file.name);
    if (!entry || entry->size != file.size) return &file;
  }
  return nullptr;
}

bool FileCheck::step() {
  std::vector<std::uint8_t> slice(kSlice);
  const std::size_t count = file_->read(slice);
  crc_.add(std::span(slice).first(count));
  size_ += count;
  return count == slice.size();
}

}  // namespace omniset
