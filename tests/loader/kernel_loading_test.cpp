#include "payload/loader/common/kernel_loading.h"

#include <gmock/gmock.h>

#include <map>

#include "fake_pc.h"
#include "kernel_file.h"
#include "payload/loader/common/low_memory.h"

namespace omniset::loader::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StrEq;

constexpr std::uint32_t kMega = 0x100000;
constexpr std::uint8_t kOld = 0xCC;  // what memory holds before
constexpr char kText[] = "KERNEL linux\nAPPEND load_ramdisk=1 initrd=initrd.rgz\n";

std::vector<std::uint8_t> bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

std::vector<std::uint8_t> ramDisk(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 11 + i / 4096);
  return bytes;
}

// A PC of 8 MB with a kernel that uses 3 of them.
class KernelLoading : public ::testing::Test {
 protected:
  KernelLoading() {
    std::fill(pc.memory.begin(), pc.memory.end(), kOld);
    files["c"] = bytesOf(kText);
    files["linux"] = kernel;
    files["initrd.rgz"] = ramDisk(10000);
  }

  void load(std::uint32_t memoryEnd = 8 * kMega) {
    MemoryMap map;
    map.add({.start = kMega, .size = memoryEnd - kMega, .type = kUsableMemory});
    pc.server.serve({files["c"], files["linux"], files["initrd.rgz"]});
    pc.exchangesDatagrams = false;  // as after a restart
    loadConfiguration("c", configuration);
    loadSystem(configuration, map);
  }

  std::string failure(std::uint32_t memoryEnd = 8 * kMega) {
    return failureOf([&] { load(memoryEnd); });
  }

  std::uint32_t ramDiskAt() const { return pc.number(kSetupAt + 0x218); }
  std::uint32_t ramDiskSize() const { return pc.number(kSetupAt + 0x21C); }

  const std::vector<std::uint8_t> kernel = makeKernel();
  FakePc pc;
  std::map<std::string, std::vector<std::uint8_t>> files;
  BootConfiguration configuration;
};

TEST_F(KernelLoading, PutsBothPartsOfTheKernelToTheirPlaces) {
  load();
  const std::uint32_t setup = headerOf(kernel).setupSize();
  EXPECT_EQ(pc.bytes(kSetupAt + 1024, setup - 1024),
            std::vector(kernel.begin() + 1024, kernel.begin() + setup));
  EXPECT_EQ(pc.bytes(kKernelAt, kernel.size() - setup),
            std::vector(kernel.begin() + setup, kernel.end()));
}

TEST_F(KernelLoading, PutsNothingBehindThePartsOfTheKernel) {
  load();
  const std::uint32_t setup = headerOf(kernel).setupSize();
  const auto size = static_cast<std::uint32_t>(kernel.size());
  EXPECT_EQ(pc.bytes(kSetupAt + setup, kSetupRoom), std::vector<std::uint8_t>(kSetupRoom, kOld));
  // The file as it arrived is still behind the 32-bit part that moved down.
  EXPECT_EQ(pc.bytes(kKernelAt + size - setup, setup),
            std::vector(kernel.end() - setup, kernel.end()));
  EXPECT_EQ(pc.bytes(kKernelAt + size, 0x10000), std::vector<std::uint8_t>(0x10000, kOld));
}

TEST_F(KernelLoading, TellsTheKernelItsHeapBelowItsStack) {
  load();
  EXPECT_EQ(pc.number(kSetupAt + 0x224) & 0xFFFF, 0xDE00u);
}

TEST_F(KernelLoading, PassesTheWholeCommandLine) {
  load();
  EXPECT_EQ(pc.number(kSetupAt + 0x228), kCommandLineAt);
  EXPECT_THAT(reinterpret_cast<const char*>(&pc.memory[kCommandLineAt]),
              StrEq("load_ramdisk=1 initrd=initrd.rgz"));
}

TEST_F(KernelLoading, PutsTheRamDiskToTheEndOfMemory) {
  load();
  EXPECT_EQ(ramDiskAt(), 8 * kMega - 3 * kPage);
  EXPECT_EQ(ramDiskSize(), 10000u);
  EXPECT_EQ(pc.bytes(ramDiskAt(), 10000), ramDisk(10000));
}

TEST_F(KernelLoading, PutsTheRamDiskWhereTheKernelReachesIt) {
  files["linux"] = makeKernel({.ramDiskLast = 6 * kMega - 1});
  load();
  EXPECT_EQ(ramDiskAt(), 6 * kMega - 3 * kPage);
}

TEST_F(KernelLoading, ARamDiskOfAnySizeArrivesWhole) {
  constexpr std::uint32_t kRoom = 5 * kMega;
  for (const std::uint32_t size : {1u, 4096u, 4097u, 65536u, kRoom / 2 + 1, kRoom - 3 * kPage + 5,
                                   kRoom - kPage, kRoom - 1, kRoom}) {
    files["initrd.rgz"] = ramDisk(size);
    load();
    EXPECT_EQ(ramDiskSize(), size);
    EXPECT_EQ(ramDiskAt() % kPage, 0u);
    EXPECT_GE(ramDiskAt(), 3 * kMega);
    EXPECT_LE(ramDiskAt() + size, 8 * kMega);
    EXPECT_EQ(pc.bytes(ramDiskAt(), size), ramDisk(size)) << size;
  }
}

TEST_F(KernelLoading, ARamDiskThatDoesNotFitIsRefused) {
  files["initrd.rgz"] = ramDisk(5 * kMega + 1);
  EXPECT_EQ(failure(), "initrd.rgz does not fit the memory of this PC.");
}

TEST_F(KernelLoading, AnEmptyRamDiskIsRefused) {
  files["initrd.rgz"] = {};
  EXPECT_EQ(failure(), "initrd.rgz is empty.");
}

TEST_F(KernelLoading, WithoutRamDiskTheKernelIsToldNone) {
  files["c"] = bytesOf("KERNEL linux\n");
  load();
  EXPECT_EQ(ramDiskAt(), 0u);
  EXPECT_EQ(ramDiskSize(), 0u);
  EXPECT_EQ(pc.server.requested.size(), 2u);
}

TEST_F(KernelLoading, EachFileIsAskedForOnceInThisOrder) {
  load();
  EXPECT_THAT(pc.server.requested, ElementsAre("c", "linux", "initrd.rgz"));
}

// The PC refuses to open one while another is open.
TEST_F(KernelLoading, EachFileIsClosedInTheEnd) {
  load();
  EXPECT_FALSE(pc.exchangesDatagrams);
}

TEST_F(KernelLoading, ShowsWhatIsLoaded) {
  load();
  EXPECT_EQ(pc.shown, "Loading linux . 14 KB\nLoading initrd.rgz . 10 KB\n");
}

TEST_F(KernelLoading, AKernelLargerThanMemoryIsRefusedBeforeItLeavesIt) {
  files["linux"] = makeKernel({.size32Bit = 0x80000});
  EXPECT_EQ(failure(kMega + 0x20000), "linux does not fit the memory of this PC.");
  EXPECT_EQ(failure(kMega), "linux does not fit the memory of this PC.");
}

TEST_F(KernelLoading, AKernelThatNeedsMoreMemoryThanThereIsIsRefused) {
  EXPECT_EQ(failure(3 * kMega - 1), "linux does not fit the memory of this PC.");
  files["c"] = bytesOf("KERNEL linux\n");
  EXPECT_EQ(failure(3 * kMega), "");
}

TEST_F(KernelLoading, WhatIsNoKernelIsRefusedBeforeTheRamDisk) {
  files["linux"] = std::vector<std::uint8_t>(5000, 0xFF);
  EXPECT_EQ(failure(), "linux is not a Linux kernel.");
  EXPECT_EQ(pc.server.requested.size(), 2u);
}

TEST_F(KernelLoading, EveryFaultOfAKernelHasItsSentence) {
  files["linux"] = makeKernel({.protocol = 0x202});
  EXPECT_EQ(failure(), "linux is too old a Linux kernel.");
  files["linux"] = makeKernel({.setupSectors = 255});
  EXPECT_EQ(failure(), "linux has a real-mode part that is too large.");
  files["linux"] = makeKernel({.initialSize = 0xFFFFFFFF});
  EXPECT_EQ(failure(), "linux does not fit the memory of this PC.");
  files["linux"] = kernel;
  files["linux"].resize(8000);
  EXPECT_EQ(failure(), "linux is not complete.");
  files["linux"] = kernel;
  files["linux"][0x211] = 0;
  EXPECT_EQ(failure(), "linux is a Linux kernel for low memory (zImage).");
}

TEST_F(KernelLoading, ACommandLineLongerThanTheKernelTakesIsRefused) {
  files["linux"] = makeKernel({.longestCommandLine = 32});
  load();
  files["linux"] = makeKernel({.longestCommandLine = 31});
  EXPECT_EQ(failure(), "linux does not take so long an APPEND line.");
}

TEST_F(KernelLoading, AConfigurationIsReadUpTo4095Bytes) {
  files["c"].resize(4095, '\n');
  EXPECT_EQ(failure(), "");
  files["c"].resize(4096, '\n');
  EXPECT_EQ(failure(), "c is larger than a configuration can be.");
  files["c"].resize(100000, '\n');
  EXPECT_EQ(failure(), "c is larger than a configuration can be.");
}

TEST_F(KernelLoading, EveryFaultOfAConfigurationHasItsSentence) {
  files["c"] = {};
  EXPECT_EQ(failure(), "c has no KERNEL line.");
  files["c"] = bytesOf("KERNEL " + std::string(200, 'x'));
  EXPECT_EQ(failure(), "c has a file name that is too long.");
  files["c"] = bytesOf("KERNEL x\nAPPEND " + std::string(3000, 'x'));
  EXPECT_EQ(failure(), "c has an APPEND line that is too long.");
}

TEST_F(KernelLoading, ALargeKernelIsLoadedInPieces) {
  files["linux"] = makeKernel({.setupSectors = 31, .size32Bit = 0x137200});
  load();
  const auto& file = files["linux"];
  EXPECT_EQ(pc.bytes(kKernelAt, 0x137200), std::vector(file.begin() + 0x4000, file.end()));
  EXPECT_THAT(pc.shown, HasSubstr("Loading linux .................... 1261 KB\n"));
}

}  // namespace
}  // namespace omniset::loader::test
