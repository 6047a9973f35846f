// What the first sector of a disk tells of what is on it.
#pragma once

#include <string>

#include "media/volumes.h"

namespace omniset {

struct FirstSector {
  std::string label;     // of a FAT volume; empty: it has none
  std::string contents;  // such as "FAT16 volume", "2 partitions", "nothing"
};

FirstSector readFirstSector(const DriveSector& sector);

}  // namespace omniset
