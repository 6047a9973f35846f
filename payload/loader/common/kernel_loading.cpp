#include "payload/loader/common/kernel_loading.h"

#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/physical_memory.h"

namespace omniset::loader {
namespace {

constexpr const char* kNoMemory = " does not fit the memory of this PC.";

// Only what a person would write.
std::array<char, 4096> configurationText;
KernelHeader kernelHeader;

const char* faultText(ConfigurationFault fault) {
  switch (fault) {
    case ConfigurationFault::kLongName:
      return " has a file name that is too long.";
    case ConfigurationFault::kLongCommandLine:
      return " has an APPEND line that is too long.";
    default:
      return " has no KERNEL line.";
  }
}

const char* faultText(KernelFault fault) {
  switch (fault) {
    case KernelFault::kOldProtocol:
      return " is too old a Linux kernel.";
    case KernelFault::kNotHigh:
      return " is a Linux kernel for low memory (zImage).";
    case KernelFault::kLargeSetup:
      return " has a real-mode part that is too large.";
    case KernelFault::kIncomplete:
      return " is not complete.";
    case KernelFault::kTooLarge:
      return kNoMemory;
    default:
      return " is not a Linux kernel.";
  }
}

std::uint32_t lengthOf(const char* text) {
  std::uint32_t length = 0;
  while (text[length] != 0) ++length;
  return length;
}

// Both are on page boundaries: from the end on in pieces that never overlap themselves.
void moveUp(std::uint32_t to, std::uint32_t from, std::uint32_t size) {
  const std::uint32_t distance = to - from;
  if (distance == 0) return;
  while (size > 0) {
    std::uint32_t count = size % distance;
    if (count == 0) count = distance;
    size -= count;
    copyMemory(to + size, from + size, count);
  }
}

// Loaded to the largest free range, and then moved to its end, where it is out of every way.
MemoryRange loadRamDisk(const char* name, const MemoryRange& range) {
  const std::uint32_t size = loadFile(name, range);
  if (size == 0) fail(name, " is empty.");
  const std::uint32_t place = (range.end - size) & ~(kPage - 1);
  moveUp(place, range.start, size);
  return {place, place + size};
}

// The kernel's file was loaded to kKernelAt.
void splitKernel(std::uint32_t setupSize, std::uint32_t fileSize) {
  copyMemory(kSetupAt, kKernelAt, setupSize);
  copyMemory(kKernelAt, kKernelAt + setupSize, fileSize - setupSize);
}

}  // namespace

std::uint32_t loadFile(const char* name, const MemoryRange& range) {
  print("Loading ");
  print(name);
  print(" ");
  openFile(name);
  std::uint32_t size = 0;
  while (const std::uint32_t count = readFile()) {
    if (count > range.size() - size) fail(name, kNoMemory);
    copyMemory(range.start + size, kTransferAt, count);
    size += count;
    print(".");
  }
  closeFile();
  print(" ");
  printNumber((size + 1023) / 1024);
  print(" KB\n");
  return size;
}

void loadConfiguration(const char* name, BootConfiguration& configuration) {
  openFile(name);
  const std::uint32_t size = readFile();
  if (size >= configurationText.size() || readFile() != 0) {
    fail(name, " is larger than a configuration can be.");
  }
  closeFile();
  readMemory(configurationText.data(), kTransferAt, size);
  const ConfigurationFault fault =
      readConfiguration(std::string_view(configurationText.data(), size), configuration);
  if (fault != ConfigurationFault::kNone) fail(name, faultText(fault));
}

void requireKernel(const char* name, const KernelHeader& header, std::uint32_t fileSize) {
  const KernelFault fault = header.check(fileSize);
  if (fault != KernelFault::kNone) fail(name, faultText(fault));
}

void loadSystem(const BootConfiguration& configuration, const MemoryMap& map) {
  const char* name = configuration.kernel.data();
  const std::uint32_t memoryEnd = map.usableEnd(kKernelAt);
  const std::uint32_t size = loadFile(name, {kKernelAt, memoryEnd});
  KernelHeader& header = kernelHeader;
  readMemory(header.bytes().data(), kKernelAt, KernelHeader::kSize);
  requireKernel(name, header, size);
  const std::uint32_t areaEnd = header.areaEnd(size);
  if (areaEnd > memoryEnd) fail(name, kNoMemory);
  const char* commandLine = configuration.commandLine.data();
  if (lengthOf(commandLine) > header.longestCommandLine()) {
    fail(name, " does not take so long an APPEND line.");
  }
  splitKernel(header.setupSize(), size);
  MemoryRange ramDisk;
  if (configuration.ramDisk[0] != 0) {
    ramDisk = loadRamDisk(configuration.ramDisk.data(),
                          map.largestUsable(roundedToPage(areaEnd), header.ramDiskCeiling()));
  }
  finishSetup(header, commandLine, ramDisk);
}

void finishSetup(KernelHeader& header, const char* commandLine, const MemoryRange& ramDisk) {
  header.setParameters({.commandLineAt = kCommandLineAt,
                        .ramDiskAt = ramDisk.start,
                        .ramDiskSize = ramDisk.size(),
                        .heapEnd = kSetupStackTop - 0x200});
  writeMemory(kSetupAt, header.bytes().data(), KernelHeader::kSize);
  writeMemory(kCommandLineAt, commandLine, lengthOf(commandLine) + 1);
}

}  // namespace omniset::loader
