#include "ui/help_text.h"

namespace omniset {

namespace {

constexpr char kLines[] = R"(Overview:
Omniset installs Kestrix on routers from this computer: remotely over Ethernet, or onto a local disk that you then put into the router.

Before you start:
Keep all files of this application together in one folder.

Installation methods:
A router can be installed in three ways.
- over the network, with a boot floppy in the target computer;
- over the network, with PXE boot of the target computer;
- onto a hard disk or flash disk that is connected to this computer and will run Kestrix later.

For floppy boot:
1. Set the BIOS of the target computer to boot from floppy.
2. Make the floppy: press "Make floppy" and follow what it says.
3. Put the floppy into the target computer and boot from it.
The target computer needs its floppy drive for as long as the installation lasts. Both computers must be on the same Ethernet segment.

For PXE boot:
1. Set the BIOS of the target computer to boot from the network by PXE.
2. Press "Net booting", enable the boot server and enter an IP address for the target computer: a free one that this computer can reach.
3. Boot the target computer.
Both computers must be on the same Ethernet segment.

For local disk installation:
1. Attach the drive of the target computer to this computer.
2. Give it a drive letter. You may have to format it for that.
This works on Windows NT4, 2000 and XP only. The computer that the drive goes into needs at least 32MB of RAM.

Installation:
1. For an installation over the network wait until the target computer appears in the list "Routers/Drives". That takes about 30 seconds after it has booted. Then select it there; a local disk is selected in the same list.
2. Press "Browse..." and choose the folder with the packages. They must be unpacked: the folder holds ".bdl" files.
3. Tick the packages to install. "system" is required. Packages that others depend on are marked automatically.
4. Enter the IP address that the router is to have at first, its default gateway and the baud rate of its console. Or tick "Keep old configuration", and the router keeps the one it has.
5. Press "Install". The status in the list and the bar below it show how far it is. "Cancel" ends it.
6. When the status is "Waiting reboot", remove the floppy from the target computer and press "Reboot". The router is ready when the status is "OK".
If the status is "Failed", the line below the list says why. Boot the target computer again, and it can be installed again.
)";

}  // namespace

std::string helpText() {
  std::string text;
  for (const char character : std::string(kLines)) {
    if (character == '\n') text += '\r';
    text += character;
  }
  return text;
}

}  // namespace omniset
