// The loader in the ELF image: kernel and RAM disk are in memory already, with the program headers
// that say where.
#include "payload/loader/bios/bios.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/kernel_loading.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/physical_memory.h"
#include "payload/loader/elf/elf_image.h"

namespace omniset::loader {
namespace {

constexpr const char* kKernelName = "The kernel";
constexpr const char* kCommandLine = "root=/dev/ram0 console=ttyS0,115200";

KernelHeader header;

// A segment's place in memory, as the program headers say.
MemoryRange segmentAt(std::uint32_t headerAt) {
  std::uint32_t address = 0;
  std::uint32_t size = 0;
  readMemory(&address, headerAt + kElfSegmentAddress, sizeof address);
  readMemory(&size, headerAt + kElfSegmentLength, sizeof size);
  return {address, address + size};
}

bool isUsable(const MemoryMap& map, const MemoryRange& range) {
  return range.end >= range.start && map.usableEnd(range.start) >= range.end;
}

}  // namespace

// The ROM has done that before it started this program.
extern "C" void closeHardware() {}

extern "C" [[noreturn]] void etherboot() {
  print("\nOmniset " OMNISET_VERSION " network boot (ELF image)\n");
  MemoryMap map;
  surveyMemory(map);
  readMemory(header.bytes().data(), kSetupAt, KernelHeader::kSize);
  const MemoryRange kernel = segmentAt(kElfLoaderAt + kElfKernel);
  const std::uint32_t fileSize = header.setupSize() + kernel.size();
  requireKernel(kKernelName, header, fileSize);
  const MemoryRange ramDisk = segmentAt(kElfLoaderAt + kElfRamDisk);
  if (!isUsable(map, {kKernelAt, header.areaEnd(fileSize)}) || !isUsable(map, ramDisk)) {
    fail("This PC has too little memory.");
  }
  finishSetup(header, kCommandLine, ramDisk);
  print("Starting the kernel.\n");
  startKernel();
}

}  // namespace omniset::loader
