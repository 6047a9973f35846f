#include <gmock/gmock.h>

#include <numeric>

#include "fake_pc.h"
#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/low_memory.h"

namespace omniset::loader::test {
namespace {

using ::testing::ElementsAre;
using ::testing::StrEq;

constexpr std::uint32_t kOwn = 0x1458A8C0;      // 192.168.88.20
constexpr std::uint32_t kServer = 0x0158A8C0;   // 192.168.88.1
constexpr std::uint32_t kGateway = 0xFE58A8C0;  // 192.168.88.254

std::vector<std::uint8_t> content(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
  return bytes;
}

class TftpFile : public ::testing::Test {
 protected:
  TftpFile() { networkAddresses = {kOwn, kServer, kGateway}; }

  // The file's bytes as they come, one fill of the transfer memory after the other.
  std::vector<std::uint8_t> fetch(const char* name) {
    std::vector<std::uint8_t> all;
    openFile(name);
    while (const std::uint32_t count = readFile()) {
      EXPECT_LE(count, kTransferRoom);
      const auto bytes = pc.bytes(kTransferAt, count);
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    closeFile();
    return all;
  }

  std::size_t callsOf(RomFunction function) const {
    return static_cast<std::size_t>(std::count(pc.calls.begin(), pc.calls.end(), function));
  }

  FakePc pc;
};

TEST_F(TftpFile, IsAskedForOnceAtTheServer) {
  pc.files["linux"] = content(100);
  fetch("linux");
  ASSERT_EQ(pc.opened.size(), 1u);
  EXPECT_THAT(pc.opened[0].name.data(), StrEq("linux"));
  EXPECT_EQ(pc.opened[0].server, kServer);
  EXPECT_EQ(pc.opened[0].gateway, kGateway);
  EXPECT_EQ(pc.opened[0].port, 69 << 8);
  EXPECT_EQ(pc.opened[0].packetSize, 512);
}

TEST_F(TftpFile, IsOpenedReadAndClosedAndNothingElse) {
  pc.files["linux"] = content(700);
  fetch("linux");
  EXPECT_THAT(pc.calls, ElementsAre(RomFunction::kTftpOpen, RomFunction::kTftpRead,
                                    RomFunction::kTftpRead, RomFunction::kTftpClose));
}

TEST_F(TftpFile, ComesWholeWhateverItsSize) {
  for (const std::size_t size :
       {0, 1, 511, 512, 513, 1024, 0xFFFF, 0x10000, 0x10001, 0x20000, 200001}) {
    pc.files["x"] = content(size);
    EXPECT_EQ(fetch("x"), content(size)) << size;
  }
}

TEST_F(TftpFile, OfFullBlocksEndsWithAnEmptyOne) {
  pc.files["x"] = content(1024);
  fetch("x");
  EXPECT_EQ(callsOf(RomFunction::kTftpRead), 3u);
}

TEST_F(TftpFile, IsNotReadBehindItsShortBlock) {
  pc.files["x"] = content(1000);
  pc.endsWithFailure = true;
  EXPECT_EQ(fetch("x"), content(1000));
  EXPECT_EQ(callsOf(RomFunction::kTftpRead), 2u);
}

TEST_F(TftpFile, ComesInTheBlocksThatTheServerWants) {
  for (const std::uint16_t size : {std::uint16_t{1}, std::uint16_t{100}, std::uint16_t{511}}) {
    pc.files["x"] = content(150000);
    pc.packetSize = size;
    pc.calls.clear();
    EXPECT_EQ(fetch("x"), content(150000)) << size;
    EXPECT_EQ(callsOf(RomFunction::kTftpRead), 150000u / size + 1);
  }
}

TEST_F(TftpFile, ABlockSizeThatNobodyAskedForCountsAsTheUsualOne) {
  for (const std::uint16_t size : {std::uint16_t{0}, std::uint16_t{513}, std::uint16_t{1468},
                                   std::uint16_t{1469}, std::uint16_t{0xFFFF}}) {
    pc.files["x"] = content(1300);
    pc.packetSize = size;
    EXPECT_EQ(fetch("x"), content(1300)) << size;
  }
}

TEST_F(TftpFile, ThatTheServerDoesNotHaveIsNamedAndNotAskedForAgain) {
  EXPECT_EQ(failureOf([] { openFile("linux"); }), "The server does not have linux (code 59).");
  EXPECT_EQ(pc.opened.size(), 1u);
}

TEST_F(TftpFile, ThatBreaksOffIsNamedWithTheRomsStatus) {
  pc.files["linux"] = content(1000);
  openFile("linux");
  pc.failures[RomFunction::kTftpRead] = 0x35;
  EXPECT_EQ(failureOf([] { readFile(); }), "linux was not received from the server (code 53).");
}

TEST_F(TftpFile, ARomThatFailsWithoutAStatusFailsAllTheSame) {
  pc.failures[RomFunction::kTftpOpen] = 0;
  EXPECT_EQ(failureOf([] { openFile("linux"); }),
            "linux was not received from the server (code 0).");
}

TEST_F(TftpFile, ARomThatTellsAFailureOnlyByItsStatusFailsAllTheSame) {
  pc.returnsNothing = true;
  pc.files["linux"] = content(1000);
  openFile("linux");
  pc.failures[RomFunction::kTftpRead] = 0x35;
  EXPECT_EQ(failureOf([] { readFile(); }), "linux was not received from the server (code 53).");
  EXPECT_EQ(failureOf([] { openFile("missing"); }), "The server does not have missing (code 59).");
}

TEST_F(TftpFile, ThatTheRomHasClosedAlreadyIsCompleteAllTheSame) {
  pc.files["linux"] = content(1000);
  pc.failures[RomFunction::kTftpClose] = 0x18;
  EXPECT_EQ(fetch("linux"), content(1000));
}

TEST_F(TftpFile, FillsTheTransferMemoryWhereItCan) {
  pc.files["x"] = content(kTransferRoom + 100);
  openFile("x");
  EXPECT_EQ(readFile(), kTransferRoom);
  EXPECT_EQ(readFile(), 100u);
  EXPECT_EQ(readFile(), 0u);
}

TEST_F(TftpFile, ARomWithoutTftpIsTold) {
  for (const std::uint16_t status : {kBadFunction, kUnsupported}) {
    pc.failures[RomFunction::kTftpOpen] = status;
    EXPECT_THAT(failureOf([] { openFile("linux"); }),
                ::testing::StartsWith("This boot ROM cannot load files by TFTP"));
  }
}

TEST_F(TftpFile, ABlockLargerThanAgreedIsRefused) {
  pc.files["linux"] = content(1000);
  openFile("linux");
  pc.blockGrowth = 1;
  EXPECT_EQ(failureOf([] { readFile(); }), "linux came with a block that is too large (code 513).");
}

}  // namespace
}  // namespace omniset::loader::test
