#include "target/disk/disk_capacity.h"

#include "core/error.h"
#include "core/file_name.h"
#include "target/disk/fat16_plan.h"
#include "target/disk/partition_table.h"
#include "target/disk/size_text.h"

namespace omniset {

namespace {

constexpr std::uint32_t kLabelEntries = 1;

}  // namespace

void requireCapacity(const std::string& diskName, std::uint64_t diskSectors,
                     const MarkedFiles& files) {
  const Fat16Plan plan = planFat16(planPartition(diskName, diskSectors).count);
  const std::uint64_t clusterSize = plan.clusterSectors * std::uint64_t{kSectorSize};
  const auto clustersOf = [&](std::uint64_t size) {
    return (size + clusterSize - 1) / clusterSize;
  };
  // Before the mark gets its place the one of the begin has it.
  std::uint64_t clusters = clustersOf(makeMark(files).size()) + clustersOf(kBegunMark.size());
  std::uint64_t entries = kLabelEntries + fatEntriesOf(kMarkName) + fatEntriesOf(kPartName);
  for (const MarkedFile& file : files) {
    clusters += clustersOf(file.size);
    entries += fatEntriesOf(file.name);
  }
  if (entries > kFat16RootEntries) {
    throw Failure("The root folder of the disk " + diskName + " has no room for the names of " +
                  std::to_string(files.size()) + " files.");
  }
  if (clusters <= plan.clusters) return;
  throw Failure("The disk " + diskName + " is too small for the packages: its volume holds " +
                sizeText(plan.clusters * std::uint64_t{plan.clusterSectors}) + ", and " +
                sizeText(clusters * plan.clusterSectors + kSectorsPerMegabyte - 1) +
                " are needed.");
}

}  // namespace omniset
