#include "target/disk/mark_file.h"

#include <string_view>

#include "core/byte_cursor.h"
#include "target/disk/volume_files.h"

namespace omniset {

namespace {

void writeText(Volume& volume, const char* name, std::string_view text) {
  const auto file = volume.create(name);
  file->write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

}  // namespace

std::optional<MarkedFiles> readMark(Volume& volume, const std::vector<VolumeEntry>& entries) {
  const VolumeEntry* mark = findFile(entries, kMarkName);
  if (!mark || mark->size > kLongestMark) return {};
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(mark->size));
  bytes.resize(volume.open(mark->name)->read(bytes));
  return parseMark(asText(bytes));
}

void writeBegunMark(Volume& volume) {
  writeText(volume, kMarkName, kBegunMark);
  volume.sync();
}

void writeMark(Volume& volume, const MarkedFiles& files) {
  writeText(volume, kPartName, makeMark(files));
  volume.sync();
  volume.rename(kPartName, kMarkName);
  volume.sync();
}

}  // namespace omniset
