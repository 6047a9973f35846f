// "ldlinux.sys": configuration, kernel and RAM disk from the volume that it lies on, then the
// kernel.
#include "payload/loader/bios/bios.h"
#include "payload/loader/bios/ports.h"
#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/kernel_loading.h"
#include "payload/loader/common/physical_memory.h"
#include "payload/loader/disk/fat_volume.h"
#include "payload/loader/disk/volume_parameter.h"

namespace omniset::loader {
namespace {

constexpr const char* kConfigurationName = "syslinux.cfg";

// The floppy controller's motors off, and the controller not in its reset.
constexpr std::uint32_t kFloppyOutput = 0x3F2;
constexpr std::uint8_t kMotorsOff = 0x0C;

BootConfiguration configuration;
FatVolume volume;

}  // namespace

// Still in its place.
extern "C" const SectorBytes bootSector;

void openFile(const char* name) {
  volume.openFile(name);
}

std::uint32_t readFile() {
  return volume.readFile();
}

void closeFile() {}

// The BIOS would stop the motor some seconds later, but its clock does not run any more then.
extern "C" void closeHardware() {
  writePort(kFloppyOutput, kMotorsOff);
}

extern "C" [[noreturn]] void diskBoot() {
  print("\nOmniset " OMNISET_VERSION " disk boot\n");
  MemoryMap map;
  surveyMemory(map);
  volume.open(bootSector);
  loadConfiguration(kConfigurationName, configuration);
  if (!appendVolume(configuration.commandLine, serialNumberIn(bootSector))) {
    fail(kConfigurationName, " has an APPEND line that is too long.");
  }
  loadSystem(configuration, map);
  print("Starting ");
  print(configuration.kernel.data());
  print(".\n");
  closeHardware();
  startKernel();
}

}  // namespace omniset::loader
