#include "payload/loader/pxe/rom.h"

#include <gmock/gmock.h>

#include <numeric>

#include "fake_pc.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/numbers.h"

namespace omniset::loader::test {
namespace {

using ::testing::ElementsAre;

constexpr FarAddress kNewAt = 0x4000'0010;  // 40010h
constexpr FarAddress kOldAt = 0x4100'0020;  // 41020h
constexpr FarAddress kNewEntry = 0x4012'3456;
constexpr FarAddress kOldEntry = 0x4065'4321;
constexpr std::size_t kFreeByte = 15;

// Makes the first bytes of a structure add up to 0, by one that says nothing.
void setSum(std::vector<std::uint8_t>& bytes, std::ptrdiff_t length) {
  const int sum = std::accumulate(bytes.begin(), bytes.begin() + length, 0);
  bytes[kFreeByte] = static_cast<std::uint8_t>(bytes[kFreeByte] - sum);
}

// A structure whose bytes add up to 0.
std::vector<std::uint8_t> structure(const std::string& signature, std::size_t lengthAt,
                                    std::size_t entryAt, FarAddress entry, std::size_t size) {
  std::vector<std::uint8_t> bytes(size, 0x11);
  std::copy(signature.begin(), signature.end(), bytes.begin());
  bytes[lengthAt] = static_cast<std::uint8_t>(size);
  putNumber(&bytes[entryAt], entry);
  setSum(bytes, static_cast<std::ptrdiff_t>(size));
  return bytes;
}

std::vector<std::uint8_t> oldStructure(std::uint16_t version) {
  auto bytes = structure("PXENV+", 8, 10, kOldEntry, 0x2C);
  putNumber(&bytes[6], version);
  setSum(bytes, 0x2C);
  return bytes;
}

class BootRom : public ::testing::Test {
 protected:
  BootRom() {
    newStructureAt = kNewAt;
    oldStructureAt = kOldAt;
    pc.put(0x40010, structure("!PXE", 4, 16, kNewEntry, 0x58));
    pc.put(0x41020, structure("PXENV+", 8, 10, kOldEntry, 0x2C));
  }

  FakePc pc;
};

TEST_F(BootRom, TheNewStructureIsPreferred) {
  findRom();
  EXPECT_EQ(romEntry, kNewEntry);
}

TEST_F(BootRom, TheOldStructureStandsInForABrokenNewOne) {
  pc.memory[0x40020] ^= 1;
  findRom();
  EXPECT_EQ(romEntry, kOldEntry);
}

TEST_F(BootRom, TheOldStructureStandsInWhereTheStackSaysNothing) {
  newStructureAt = 0;
  findRom();
  EXPECT_EQ(romEntry, kOldEntry);
}

TEST_F(BootRom, AStructureWithoutAnEntryIsNone) {
  pc.put(0x40010, structure("!PXE", 4, 16, 0, 0x58));
  findRom();
  EXPECT_EQ(romEntry, kOldEntry);
}

TEST_F(BootRom, AStructureTooShortForItsEntryIsNone) {
  auto bytes = structure("!PXE", 4, 16, kNewEntry, 0x58);
  bytes[4] = 0;
  pc.put(0x40010, bytes);
  findRom();
  EXPECT_EQ(romEntry, kOldEntry);
}

TEST_F(BootRom, AStructureThatEndsInItsEntryIsNone) {
  auto bytes = structure("!PXE", 4, 16, kNewEntry, 0x58);
  bytes[4] = 19;
  setSum(bytes, 19);
  pc.put(0x40010, bytes);
  findRom();
  EXPECT_EQ(romEntry, kOldEntry);
}

TEST_F(BootRom, WithoutEitherStructureThePcWasNotStartedByOne) {
  pc.memory[0x40010] = 'x';
  pc.memory[0x41020] = 'x';
  EXPECT_EQ(failureOf(findRom), "This program was not started by a network boot ROM (PXE).");
  EXPECT_EQ(romEntry, 0u);
}

TEST_F(BootRom, IsLeftByItsStopInTheEnd) {
  findRom();
  leaveRom();
  EXPECT_THAT(pc.calls, ElementsAre(RomFunction::kShutDownCard, RomFunction::kUnloadStack,
                                    RomFunction::kStopCard));
}

TEST_F(BootRom, OfTheOldStructureIsLeftByWhatItsVersionHas) {
  newStructureAt = 0;
  for (const auto& [version, last] : {std::pair{std::uint16_t{0x0100}, RomFunction::kCleanUpCard},
                                      std::pair{std::uint16_t{0x0200}, RomFunction::kCleanUpCard},
                                      std::pair{std::uint16_t{0x0201}, RomFunction::kStopCard}}) {
    pc.put(0x41020, oldStructure(version));
    pc.calls.clear();
    findRom();
    leaveRom();
    EXPECT_THAT(pc.calls, ElementsAre(RomFunction::kShutDownCard, RomFunction::kUnloadStack, last))
        << version;
  }
}

TEST_F(BootRom, IsLeftWhateverItCannotDo) {
  findRom();
  pc.failures = {{RomFunction::kShutDownCard, 3}, {RomFunction::kUnloadStack, 1}};
  leaveRom();
  EXPECT_EQ(pc.calls.size(), 3u);
}

TEST_F(BootRom, ThatWasNotFoundIsNotLeft) {
  leaveRom();
  EXPECT_TRUE(pc.calls.empty());
}

constexpr std::uint32_t kOwn = 0x1458A8C0;      // 192.168.88.20
constexpr std::uint32_t kServer = 0x0158A8C0;   // 192.168.88.1
constexpr std::uint32_t kGateway = 0xFE58A8C0;  // 192.168.88.254

std::vector<std::uint8_t> reply(std::uint32_t server) {
  std::vector<std::uint8_t> packet(300);
  putNumber(&packet[16], kOwn);
  putNumber(&packet[20], server);
  putNumber(&packet[24], kGateway);
  return packet;
}

TEST_F(BootRom, TellsTheAddressesOfTheReply) {
  pc.cached[PacketType::kReply] = reply(kServer);
  readAddresses();
  EXPECT_EQ(networkAddresses.own, kOwn);
  EXPECT_EQ(networkAddresses.server, kServer);
  EXPECT_EQ(networkAddresses.gateway, kGateway);
}

TEST_F(BootRom, TheAcknowledgementStandsInForAReplyThatIsNotThere) {
  pc.cached[PacketType::kAcknowledgement] = reply(kServer);
  readAddresses();
  EXPECT_EQ(networkAddresses.server, kServer);
}

TEST_F(BootRom, TheAcknowledgementStandsInForAReplyWithoutAServer) {
  pc.cached = {{PacketType::kReply, reply(0)}, {PacketType::kAcknowledgement, reply(kServer)}};
  readAddresses();
  EXPECT_EQ(networkAddresses.server, kServer);
}

// What lies where the reply would be is an older one.
TEST_F(BootRom, AReplyThatItCouldNotGiveDoesNotCount) {
  pc.put(kTransferAt, reply(kServer));
  for (const bool returnsNothing : {false, true}) {
    pc.returnsNothing = returnsNothing;
    pc.failures[RomFunction::kGetCachedInfo] = returnsNothing ? 1 : 0;
    EXPECT_EQ(failureOf(readAddresses), "The boot ROM does not tell the address of its server.");
  }
}

TEST_F(BootRom, WithoutAServerItIsOfNoUse) {
  pc.cached[PacketType::kReply] = reply(0);
  EXPECT_EQ(failureOf(readAddresses), "The boot ROM does not tell the address of its server.");
}

}  // namespace
}  // namespace omniset::loader::test
