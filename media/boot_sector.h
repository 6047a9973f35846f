// The boot sector of the disks and floppies that are made here (resources/boot_sector.asm).
#pragma once

#include "media/volumes.h"

namespace omniset {

// Of it only bytes 0 to 10 (jump and OEM name) and 62 to 509 (code) are used.
extern const DriveSector bootSectorTemplate;

// Puts these bytes over those of a volume's first sector. What the format wrote stays: the BIOS
// parameter block between them, and the signature behind them.
void patchBootSector(DriveSector& sector);

// Does that on the volume, and returns what is there now. Raises Failure as the device helpers do.
DriveSector installBootSector(Device& volume);

}  // namespace omniset
