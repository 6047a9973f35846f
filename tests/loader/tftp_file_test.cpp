#include <gmock/gmock.h>

#include <set>

#include "payload/loader/common/configuration.h"
#include "tftp_file_fixture.h"

namespace omniset::loader::test {
namespace {

using ::testing::ElementsAre;

TEST_F(TftpFile, IsAskedForOnceByItsNameAndWithoutOptions) {
  fetchOnly(content(700));
  const std::string_view expected("\0\1linux\0octet\0", 14);
  EXPECT_EQ(sent(0).to, kTftpPort);
  EXPECT_EQ(sent(0).bytes, Bytes(expected.begin(), expected.end()));
  EXPECT_EQ(requestTicks().size(), 1u);
}

TEST_F(TftpFile, OfTheLongestNameIsAskedForByAllOfIt) {
  const std::string name(sizeof(FileName) - 1, 'n');
  begin({content(5)});
  EXPECT_EQ(fetch(name.c_str()), content(5));
  EXPECT_THAT(pc.server.requested, ElementsAre(name));
}

TEST_F(TftpFile, ComesWholeWhateverItsSize) {
  for (const std::size_t size :
       {0, 1, 511, 512, 513, 1024, 8191, 8192, 8193, 0xFFFF, 0x10000, 0x10001, 0x20000, 200001}) {
    EXPECT_EQ(fetchOnly(content(size)), content(size)) << size;
  }
}

// Those around the last number come twice.
TEST_F(TftpFile, ComesWholeBeyondTheLastBlockNumber) {
  pc.server.wire = [](const Datagram& datagram) {
    Arrivals arrivals{{0, datagram}};
    const bool isNearTheLast = static_cast<std::uint16_t>(numberOf(datagram) + 2) < 4;
    if (isNearTheLast && opcodeOf(datagram) == kData) arrivals.push_back({0, datagram});
    return arrivals;
  };
  const Bytes expected = content(0x10000 * 512 + 513);
  EXPECT_TRUE(fetchOnly(expected) == expected);
  const auto numbers = acknowledged();
  const std::vector last(numbers.end() - 10, numbers.end());
  EXPECT_THAT(last, ElementsAre(0xFFFD, 0xFFFE, 0xFFFE, 0xFFFF, 0xFFFF, 0, 0, 1, 1, 2));
}

TEST_F(TftpFile, IsTheOneWhoseTurnItIs) {
  begin({content(100, 1), content(5000, 2), content(1024, 3)});
  EXPECT_EQ(fetch("c"), content(100, 1));
  EXPECT_EQ(fetch("linux"), content(5000, 2));
  EXPECT_EQ(fetch("initrd.rgz"), content(1024, 3));
  EXPECT_THAT(pc.server.requested, ElementsAre("c", "linux", "initrd.rgz"));
}

TEST_F(TftpFile, EveryBlockIsAcknowledgedOnceToTheTransfersPort) {
  std::uint16_t serverPort = 0;
  pc.server.wire = [&](const Datagram& datagram) {
    if (!isFromPc(datagram)) serverPort = datagram.from;
    return Arrivals{{0, datagram}};
  };
  fetchOnly(content(1024));
  EXPECT_THAT(acknowledged(), ElementsAre(1, 2, 3));
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_EQ(sent(i).bytes.size(), 4u);
    EXPECT_EQ(sent(i).to, serverPort);
    EXPECT_EQ(sent(i).from, sent(0).from);
  }
}

TEST_F(TftpFile, EachHasAPortThatNoneHadForLong) {
  constexpr std::size_t kPorts = 0x4000;
  loseAllFromPc();
  std::set<std::uint16_t> ports;
  for (std::size_t i = 0; i < kPorts; ++i) {
    openFile("x");
    closeFile();
    ports.insert(sent(i).from);
  }
  EXPECT_EQ(ports.size(), kPorts);
  EXPECT_EQ(*ports.begin(), 0xC000);
}

TEST_F(TftpFile, FillsTheTransferMemoryWhereItCan) {
  begin({content(kTransferRoom + 100)});
  openFile("x");
  EXPECT_EQ(readFile(), kTransferRoom);
  EXPECT_EQ(readFile(), 100u);
  EXPECT_EQ(readFile(), 0u);
}

TEST_F(TftpFile, NothingAroundTheTransferMemoryIsWritten) {
  const Bytes old(0x8000, 0xCC);
  for (const std::uint32_t size : {2 * kTransferRoom - 1, 2 * kTransferRoom}) {
    pc.put(kTransferAt - 0x8000, old);
    pc.put(kTransferAt + kTransferRoom, old);
    fetchOnly(content(size));
    EXPECT_EQ(pc.bytes(kTransferAt - 0x8000, old.size()), old);
    EXPECT_EQ(pc.bytes(kTransferAt + kTransferRoom, old.size()), old);
  }
}

TEST_F(TftpFile, ThreeRequestsInVainAreMadeUpFor) {
  pc.server.wire = [&](const Datagram& datagram) {
    return requestTicks().size() < 4 ? Arrivals{} : Arrivals{{0, datagram}};
  };
  EXPECT_EQ(fetchOnly(content(700)), content(700));
  EXPECT_THAT(pc.server.requested, ElementsAre("linux"));
}

TEST_F(TftpFile, ThreeAcknowledgementsInVainAreMadeUpFor) {
  pc.server.wire = [&](const Datagram& datagram) {
    const bool isBlock2 = !isFromPc(datagram) && numberOf(datagram) == 2;
    return isBlock2 && acknowledged().size() < 4 ? Arrivals{} : Arrivals{{0, datagram}};
  };
  EXPECT_EQ(fetchOnly(content(1500)), content(1500));
  EXPECT_THAT(acknowledged(), ElementsAre(1, 1, 1, 1, 2, 3));
}

TEST_F(TftpFile, ThatIsNotAnsweredIsAskedForAgainAfterFourAndAHalfSeconds) {
  loseAllFromPc();
  begin({content(700)});
  EXPECT_EQ(failure(), "linux was not received: the server does not answer.");
  const auto ticks = requestTicks();
  ASSERT_EQ(ticks.size(), 4u);
  for (std::size_t i = 1; i < ticks.size(); ++i) EXPECT_EQ(ticks[i] - ticks[i - 1], kPatience);
  EXPECT_EQ(pc.server.ticks() - ticks.back(), kPatience);
  EXPECT_EQ(pc.server.sentByPc.size(), 4u);
}

TEST_F(TftpFile, ThatBreaksOffIsAcknowledgedAgainAndGivenUp) {
  pc.server.wire = [](const Datagram& datagram) {
    return numberOf(datagram) == 2 && !isFromPc(datagram) ? Arrivals{} : Arrivals{{0, datagram}};
  };
  begin({content(2000)});
  EXPECT_EQ(failure(), "linux was not received: the server fell silent.");
  EXPECT_THAT(acknowledged(), ElementsAre(1, 1, 1, 1));
  EXPECT_EQ(requestTicks().size(), 1u);
}

TEST_F(TftpFile, ThatTheServerDoesNotHaveIsNamed) {
  answerWith(packet(kError, 1, 5));
  begin({content(100)});
  EXPECT_EQ(failure(), "linux was not received: the server does not have it.");
  EXPECT_EQ(pc.server.sentByPc.size(), 1u);
}

TEST_F(TftpFile, ThatTheServerRefusesIsNamedWithTheReason) {
  for (const int code : {0, 2, 8, 0x0100, 0xFFFF}) {
    answerWith(packet(kError, static_cast<std::uint16_t>(code)));
    begin({content(100)});
    EXPECT_EQ(failure(),
              "linux was not received: the server refuses it (code " + std::to_string(code) + ").");
  }
}

TEST_F(TftpFile, ThatTheServerBreaksOffIsNamedWithTheReason) {
  answerWith(packet(kError, 3, 9), 3);
  begin({content(5000)});
  EXPECT_EQ(failure(), "linux was not received: the server refuses it (code 3).");
  EXPECT_THAT(acknowledged(), ElementsAre(1, 2));
}

}  // namespace
}  // namespace omniset::loader::test
