// The network boot program: configuration, kernel and RAM disk from the server, then the kernel.
#include "payload/loader/bios/bios.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/kernel_loading.h"
#include "payload/loader/common/physical_memory.h"
#include "payload/loader/pxe/rom.h"

namespace omniset::loader {
namespace {

constexpr const char* kConfigurationName = "omniset.cfg";

BootConfiguration configuration;

void printAddress(std::uint32_t address) {
  for (int i = 0; i < 4; ++i) {
    if (i > 0) print(".");
    printNumber(address & 0xFF);
    address >>= 8;
  }
}

void printAddresses() {
  print("Address ");
  printAddress(networkAddresses.own);
  print(", server ");
  printAddress(networkAddresses.server);
  print("\n");
}

}  // namespace

extern "C" void closeHardware() {
  leaveRom();
}

extern "C" [[noreturn]] void networkBoot() {
  print("\nOmniset " OMNISET_VERSION " network boot\n");
  findRom();
  MemoryMap map;
  surveyMemory(map);
  readAddresses();
  printAddresses();
  loadConfiguration(kConfigurationName, configuration);
  loadSystem(configuration, map);
  print("Starting ");
  print(configuration.kernel.data());
  print(".\n");
  closeHardware();
  startKernel();
}

}  // namespace omniset::loader
