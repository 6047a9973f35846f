#include <filesystem>

#include "core/ipv4_address.h"
#include "tests/install/session_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;

struct SessionTransfer : SessionFixture {
  // A session about to send these packages, of those sizes.
  void startWith(const std::vector<std::pair<std::string, std::size_t>>& files) {
    for (const auto& [name, size] : files) {
      packages.write(name, std::string(size, 'p'));
      record.packageFiles.push_back(name);
    }
    startTo(State::kTransferring);
    before = link.sentCount();
  }
  // The texts of the file headers and the lengths of the chunks sent in this state.
  std::vector<std::string> sent() const {
    std::vector<std::string> list;
    for (std::size_t i = before; i < link.sentCount(); ++i) {
      const LinkFrame frame = link.sent(i);
      const bool isData = frame.header().channel == kDataChannel;
      list.push_back(isData ? std::to_string(frame.payload().size())
                            : std::string(frame.payloadText()));
    }
    return list;
  }

  std::size_t before = 0;
};

TEST_F(SessionTransfer, HeaderGoesOutWhenTheTimerFires) {
  startWith({{"a.bdl", 5}});
  fire();
  EXPECT_THAT(sent(), ElementsAre("FILE\na.bdl\n5\n"));
  EXPECT_EQ(state().statusText, "Transfering: a.bdl");
  EXPECT_EQ(trace.text(),
            "sending a.bdl, size: 5\ntimeout, resend  " + std::to_string(now()) + "\n");
  EXPECT_EQ(session->deadline(), now() + kSecond);
  EXPECT_EQ(state().bytesSent, 0);
  const FrameHeader header = lastSent().header();
  EXPECT_FALSE(header.isAck);
  EXPECT_EQ(header.sequence, 2);
}

TEST_F(SessionTransfer, UnacknowledgedHeaderIsRepeatedEachSecondSixtyTimes) {
  startWith({{"a.bdl", 5}});
  fire();
  const Micros first = now();
  for (int i = 1; i < 60; ++i) fire();
  EXPECT_EQ(link.sentCount() - before, 60u);
  EXPECT_EQ(link.network->sent[before].bytes, link.network->sent.back().bytes);
  trace.clear();
  fire();
  EXPECT_EQ(now(), first + 60 * kSecond);
  EXPECT_EQ(link.sentCount() - before, 60u);
  expectFailed("Connection timeout");
  EXPECT_EQ(trace.text(), "fail: Connection timeout\n");
}

TEST_F(SessionTransfer, AcknowledgementDrawsTheNextChunkAtOnce) {
  startWith({{"a.bdl", 2000}});
  fire();
  trace.clear();
  acknowledges();
  EXPECT_THAT(sent(), ElementsAre("FILE\na.bdl\n2000\n", "1452"));
  EXPECT_EQ(state().bytesSent, 1452);
  EXPECT_EQ(session->deadline(), now() + 10 * kMillisecond);
  EXPECT_EQ(lastSent().header().sequence, 3);
  acknowledges();
  EXPECT_THAT(sent(), ElementsAre("FILE\na.bdl\n2000\n", "1452", "548"));
  EXPECT_EQ(state().bytesSent, 2000);
  EXPECT_EQ(trace.text(), "");
}

TEST_F(SessionTransfer, RetransmissionDoublesFromTenMillisecondsUntilItPassesASecond) {
  startWith({{"a.bdl", 5}});
  fire();
  acknowledges();
  std::vector<Micros> waits;
  for (int i = 0; i < 10; ++i) {
    waits.push_back((session->deadline() - now()) / kMillisecond);
    fire();
  }
  EXPECT_THAT(waits, ElementsAre(10, 20, 40, 80, 160, 320, 640, 1280, 1280, 1280));
  EXPECT_EQ(link.network->sent[before + 1].bytes, link.network->sent.back().bytes);
}

TEST_F(SessionTransfer, UnacknowledgedChunkIsRepeatedSixtyTimes) {
  startWith({{"a.bdl", 5}});
  fire();
  acknowledges();
  const std::size_t chunk = link.sentCount();
  for (int i = 0; i < 60; ++i) fire();
  EXPECT_EQ(link.sentCount() - chunk, 60u);
  EXPECT_EQ(session->state(), State::kTransferring);
  fire();
  EXPECT_EQ(link.sentCount() - chunk, 60u);
  expectFailed("Connection timeout");
}

TEST_F(SessionTransfer, AcknowledgementRenewsTriesAndTimeout) {
  startWith({{"a.bdl", 2000}});
  fire();
  acknowledges();
  for (int i = 0; i < 60; ++i) fire();
  acknowledges();
  EXPECT_EQ(session->deadline(), now() + 10 * kMillisecond);
  for (int i = 0; i < 60; ++i) fire();
  EXPECT_EQ(session->state(), State::kTransferring);
}

TEST_F(SessionTransfer, RepetitionIsTracedWithItsTime) {
  startWith({{"a.bdl", 5}});
  fire();
  acknowledges();
  trace.clear();
  fire();
  EXPECT_EQ(trace.text(), "timeout, resend  " + std::to_string(now()) + "\n");
  EXPECT_EQ(state().bytesSent, 5);
}

TEST_F(SessionTransfer, OldAcknowledgementOnlyRenewsTheTimer) {
  startWith({{"a.bdl", 2000}});
  fire();
  acknowledges();
  fire();
  const std::size_t count = link.sentCount();
  link.clock.advance(5 * kMillisecond);
  hear(makeFrame(kTargetMac, kInstallerMac, 4, 2));
  EXPECT_EQ(link.sentCount(), count);
  EXPECT_EQ(state().bytesSent, 1452);
  EXPECT_EQ(session->deadline(), now() + 20 * kMillisecond);
}

TEST_F(SessionTransfer, TextThatAcknowledgesNothingNewChangesNothing) {
  startWith({{"a.bdl", 2000}});
  fire();
  const std::size_t count = link.sentCount();
  hear(makeFrame(kTargetMac, kInstallerMac, 4, 1, "STRT\n"));
  EXPECT_EQ(session->state(), State::kTransferring);
  EXPECT_EQ(link.sentCount(), count);
  EXPECT_EQ(session->deadline(), now() + kSecond);
}

TEST_F(SessionTransfer, AcknowledgementMayComeWithAText) {
  startWith({{"a.bdl", 5}});
  fire();
  hear(makeFrame(kTargetMac, kInstallerMac, 4, 2, "YES\n"));
  EXPECT_THAT(sent(), ElementsAre("FILE\na.bdl\n5\n", "5"));
}

TEST_F(SessionTransfer, RepeatedStartDoesNotDisturbIt) {
  startWith({{"a.bdl", 5}});
  fire();
  hear(makeFrame(kTargetMac, kInstallerMac, 3, 1, "STRT\n"));
  EXPECT_EQ(session->state(), State::kTransferring);
  EXPECT_TRUE(trace.contains("bad packet received: "));
  EXPECT_EQ(link.sentCount() - before, 1u);
}

TEST_F(SessionTransfer, NextFileStartsTenMillisecondsAfterTheLastOne) {
  startWith({{"a.bdl", 5}, {"b.bdl", 6}});
  fire();
  acknowledges();
  acknowledges();
  EXPECT_THAT(sent(), ElementsAre("FILE\na.bdl\n5\n", "5"));
  EXPECT_EQ(session->deadline(), now() + 10 * kMillisecond);
  EXPECT_EQ(state().statusText, "Transfering: a.bdl");
  fire();
  EXPECT_EQ(sent().back(), "FILE\nb.bdl\n6\n");
  EXPECT_EQ(state().statusText, "Transfering: b.bdl");
  EXPECT_EQ(state().bytesSent, 5);
  EXPECT_EQ(session->deadline(), now() + kSecond);
}

TEST_F(SessionTransfer, EmptyPackageIsAHeaderAlone) {
  startWith({{"empty.bdl", 0}});
  fire();
  acknowledges();
  fire();
  EXPECT_THAT(sent(), ElementsAre("FILE\nempty.bdl\n0\n", "FILE\nautorun.scr\n0\n"));
}

TEST_F(SessionTransfer, ScriptComesLastUnderItsOwnName) {
  record.address = ipv4(192, 168, 88, 1);
  record.netmaskLength = 24;
  startWith({{"a.bdl", 5}});
  const std::string script = readFile(temporary.path() + "/scr1");
  sendAll();
  EXPECT_THAT(sent(), ElementsAre("FILE\na.bdl\n5\n", "5",
                                  "FILE\nautorun.scr\n" + std::to_string(script.size()) + "\n",
                                  std::to_string(script.size())));
  EXPECT_EQ(lastSent().payloadText(), script);
  EXPECT_EQ(state().bytesSent, static_cast<std::int32_t>(5 + script.size()));
}

TEST_F(SessionTransfer, WithoutPackagesOnlyTheScriptIsSent) {
  startWith({});
  fire();
  EXPECT_THAT(sent(), ElementsAre("FILE\nautorun.scr\n0\n"));
  EXPECT_EQ(state().statusText, "Transfering: configuration");
  acknowledges();
  EXPECT_EQ(session->state(), State::kWaitingReboot);
}

TEST_F(SessionTransfer, LastAcknowledgementWaitsForTheReboot) {
  startWith({});
  fire();
  trace.clear();
  link.clock.advance(3 * kMillisecond);
  acknowledges();
  EXPECT_EQ(session->state(), State::kWaitingReboot);
  EXPECT_EQ(state().status, RouterStatus::kWaitingReboot);
  EXPECT_EQ(state().statusText, "Remove floppy from router and press reboot");
  EXPECT_EQ(trace.text(), "all sent\n");
  EXPECT_EQ(session->deadline(), now() + kSecond);
}

TEST_F(SessionTransfer, PackagesGoInTheOrderGiven) {
  startWith({{"z.bdl", 1}, {"a.bdl", 1}, {"m.bdl", 1}});
  sendAll();
  EXPECT_THAT(sent(), ElementsAre("FILE\nz.bdl\n1\n", "1", "FILE\na.bdl\n1\n", "1",
                                  "FILE\nm.bdl\n1\n", "1", "FILE\nautorun.scr\n0\n"));
}

TEST_F(SessionTransfer, FramesAreNumberedOnFromFileToFile) {
  startWith({{"a.bdl", 3000}, {"b.bdl", 1}});
  sendAll();
  int expected = 2;
  for (std::size_t i = before; i < link.sentCount(); ++i) {
    EXPECT_EQ(link.sent(i).header().sequence, expected++);
  }
  EXPECT_EQ(expected, 2 + 4 + 2 + 1);
}

TEST_F(SessionTransfer, MissingPackageFailsWithItsReason) {
  record.packageFiles = {"missing.bdl"};
  startTo(State::kTransferring);
  fire();
  const std::string reason = errorText("_open() package failed", 2);
  expectFailed(reason);
  EXPECT_EQ(trace.text(), "EXC while installing: " + reason + "\nfail: " + reason + "\n");
}

TEST_F(SessionTransfer, PackageThatBecomesShorterFails) {
  startWith({{"a.bdl", 60'000}});
  fire();
  std::filesystem::resize_file(packages.path() + "/a.bdl", 10);
  for (int i = 0; i < 60 && session->state() == State::kTransferring; ++i) acknowledges();
  EXPECT_EQ(state().status, RouterStatus::kFailed);
  EXPECT_TRUE(state().statusText.starts_with("Installation failed: _read() package failed: "))
      << state().statusText;
  EXPECT_EQ(state().bytesSent, 0);
}

TEST_F(SessionTransfer, SendFailureFailsWithItsOwnText) {
  startWith({{"a.bdl", 5}});
  link.network->failing = "sendTo";
  fire();
  EXPECT_EQ(state().status, RouterStatus::kFailed);
  EXPECT_TRUE(state().statusText.starts_with("Installation failed: sendto() failed: "));
  EXPECT_TRUE(trace.contains("\nEXC while installing: sendto() failed: "));
}

}  // namespace
}  // namespace omniset::test
