#include "target/disk/disk_contents.h"

#include "target/disk/fat_boot_sector.h"
#include "target/disk/mark_file.h"
#include "target/disk/volume_files.h"

namespace omniset {

DiskLayout readLayout(TargetDisk& disk) {
  DiskLayout layout;
  Sector sector{};
  disk.readSectors(0, sector);
  layout.isFatDisk = looksLikeFat(sector);
  layout.partition = firstPartition(sector, disk.sectorCount());
  layout.holdsOthers = layout.isFatDisk || holdsOtherEntries(sector, disk.sectorCount()) ||
                       (layout.partition && !isFatType(layout.partition->type));
  layout.isOurs = !layout.isFatDisk && isOurVolume(sector);
  if (!layout.partition) return layout;
  disk.readSectors(layout.partition->first, sector);
  layout.isOurs = isOurVolume(sector);
  layout.holdsFat = looksLikeFat(sector);
  if (!layout.isOurs && !layout.holdsFat) layout.holdsOthers = true;
  return layout;
}

DiskContents readContents(const DiskLayout& layout, Volume& volume) {
  const std::vector<VolumeEntry> entries = volume.list();
  if (auto files = readMark(volume, entries)) {
    const bool isWhole = !findMissing(entries, *files);
    return {isWhole ? Installation::kComplete : Installation::kNotWhole, std::move(*files)};
  }
  const bool hasBegun =
      layout.isOurs || findFile(entries, kMarkName) || findFile(entries, kPartName);
  return {hasBegun ? Installation::kBrokenOff : Installation::kNone, {}};
}

}  // namespace omniset
