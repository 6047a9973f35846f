// Several targets on one socket.
#include "target/target_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "target_fakes.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using State = TargetSession::State;

constexpr std::array kMacs{MacAddress{{0x06, 0, 0, 0, 0, 1}}, MacAddress{{0x06, 0, 0, 0, 0, 2}},
                           MacAddress{{0x06, 0, 0, 0, 0, 3}}};

struct TargetHostTest : ::testing::Test {
  TargetHostTest() { silentNetwork(); }
  // The clock moves by the waits in which nothing comes.
  void silentNetwork() { link.network->clock = &link.clock; }

  void add(std::size_t index) {
    host.add({kMacs[index], "label", "machine", "disks"}, stores[index], console);
  }
  void addAll() {
    for (std::size_t i = 0; i < kMacs.size(); ++i) add(i);
  }
  // Runs the loop until all that was delivered is handled and that much time has passed.
  void run(Micros time = 0) {
    const Micros end = link.clock.now() + time;
    while (!link.network->toReceive.empty() || link.clock.now() < end) host.step(kSecond);
  }
  State state(std::size_t index) { return host.find(kMacs[index])->state(); }
  void deliver(std::size_t to, int sequence, int ack, std::string_view text = {}) {
    link.deliver(makeFrame(kInstallerMac, kMacs[to], sequence, ack, text));
  }
  void install(std::size_t index) {
    deliver(index, 1, 1, "OFFR\n");
    deliver(index, 2, 2);
    run(kSecond);
    deliver(index, 2, kNoAck, "FILE\nautorun.scr\n0\n");
    run();
  }
  std::vector<Micros> announcementTimes(const MacAddress& mac, Micros duration) {
    std::vector<Micros> times;
    const Micros start = link.clock.now();
    link.network->sent.clear();
    while (link.clock.now() < start + duration) {
      const Micros now = link.clock.now();
      host.step(kSecond);
      for (const auto& datagram : link.network->sent) {
        if (frameFrom(datagram.bytes).header().source == mac) times.push_back(now - start);
      }
      link.network->sent.clear();
    }
    return times;
  }

  LinkFixture link;
  SilentTrace silence;
  FakeConsole console;
  std::array<FakeStore, kMacs.size()> stores;
  TargetHost host{link.endpoint, link.clock};
};

TEST_F(TargetHostTest, EachTargetAnnouncesItselfWithItsOwnAddress) {
  addAll();
  host.step(kSecond);
  std::vector<MacAddress> sources;
  for (const auto& datagram : link.network->sent) {
    sources.push_back(frameFrom(datagram.bytes).header().source);
  }
  EXPECT_THAT(sources, ElementsAre(kMacs[0], kMacs[1], kMacs[2]));
}

TEST_F(TargetHostTest, EachTargetHasItsOwnTimers) {
  add(0);
  run(300 * kMillisecond);
  host.step(300 * kMillisecond);
  const Micros later = link.clock.now();
  add(1);
  EXPECT_THAT(announcementTimes(kMacs[1], 3 * kSecond), ElementsAre(0, kSecond, 2 * kSecond));
  const auto ofTheFirst = announcementTimes(kMacs[0], 3 * kSecond);
  ASSERT_EQ(ofTheFirst.size(), 3u);
  EXPECT_NE((later + ofTheFirst[0]) % kSecond, later % kSecond);
  EXPECT_EQ(ofTheFirst[1] - ofTheFirst[0], kSecond);
}

TEST_F(TargetHostTest, WaitsUntilTheNextTimerButNoLongerThanAsked) {
  add(0);
  host.step(200 * kMillisecond);
  host.step(5 * kSecond);
  EXPECT_THAT(link.network->waits, ElementsAre(200 * kMillisecond, 800 * kMillisecond));
}

TEST_F(TargetHostTest, WaitsAsLongAsAskedWithoutTargets) {
  host.step(200 * kMillisecond);
  EXPECT_THAT(link.network->waits, ElementsAre(200 * kMillisecond));
}

TEST_F(TargetHostTest, AFrameReachesTheTargetItIsAddressedTo) {
  addAll();
  deliver(1, 1, 1, "OFFR\n");
  run();
  EXPECT_EQ(state(0), State::kAnnouncing);
  EXPECT_EQ(state(1), State::kAccepting);
  EXPECT_EQ(state(2), State::kAnnouncing);
}

TEST_F(TargetHostTest, TargetsAreInstalledSideBySide) {
  addAll();
  for (std::size_t i : {2u, 0u}) {
    deliver(i, 1, 1, "OFFR\n");
    deliver(i, 2, 2);
  }
  run(kSecond);
  deliver(0, 2, kNoAck, "FILE\nfirst.bdl\n10\n");
  deliver(2, 2, kNoAck, "FILE\nthird.bdl\n20\n");
  run();
  EXPECT_THAT(stores[0].calls, ElementsAre("prepare", "open first.bdl 10"));
  EXPECT_THAT(stores[1].calls, IsEmpty());
  EXPECT_THAT(stores[2].calls, ElementsAre("prepare", "open third.bdl 20"));
}

TEST_F(TargetHostTest, TheFailureOfOneLeavesTheOthersAlone) {
  addAll();
  stores[0].failing = "prepare";
  for (std::size_t i : {0u, 1u}) {
    deliver(i, 1, 1, "OFFR\n");
    deliver(i, 2, 2);
  }
  run();
  EXPECT_EQ(state(0), State::kFailed);
  EXPECT_EQ(state(1), State::kPreparing);
  EXPECT_EQ(console.speakers.back(), kMacs[1]);
}

TEST_F(TargetHostTest, ShortDatagramsAndThoseForNobodyHereAreDropped) {
  addAll();
  link.network->deliver({});
  link.network->deliver(std::vector<std::uint8_t>(19, 6));
  link.deliver(makeFrame(kInstallerMac, kStrangerMac, 1, 1, "OFFR\n"));
  link.deliver(makeFrame(kInstallerMac, kNobody, 1, 1, "OFFR\n"));
  run();
  for (std::size_t i = 0; i < kMacs.size(); ++i) EXPECT_EQ(state(i), State::kAnnouncing);
}

// The frame's buffer is one for all datagrams.
TEST_F(TargetHostTest, AShortDatagramDoesNotRepeatTheFrameBeforeIt) {
  add(0);
  add(1);
  deliver(0, 1, 1, "OFFR\n");
  run();
  host.step(1);
  link.network->sent.clear();
  link.network->deliver({});
  host.step(1);
  EXPECT_THAT(link.network->sent, IsEmpty());
}

TEST_F(TargetHostTest, DatagramsFromAnotherPortAreDropped) {
  add(0);
  link.network->deliver(makeFrame(kInstallerMac, kMacs[0], 1, 1, "OFFR\n").datagram(), 5001);
  run();
  EXPECT_EQ(state(0), State::kAnnouncing);
}

TEST_F(TargetHostTest, AKeyReachesAllTargetsThatAreInstalled) {
  addAll();
  install(0);
  install(2);
  host.keyPressed();
  EXPECT_EQ(state(0), State::kTerminating);
  EXPECT_EQ(state(1), State::kAnnouncing);
  EXPECT_EQ(state(2), State::kTerminating);
  link.network->sent.clear();
  host.step(kSecond);
  std::vector<MacAddress> sources;
  for (const auto& datagram : link.network->sent) {
    const LinkFrame frame = frameFrom(datagram.bytes);
    if (frame.payloadText() == "TERM\n") sources.push_back(frame.header().source);
  }
  EXPECT_THAT(sources, ElementsAre(kMacs[0], kMacs[2]));
}

TEST_F(TargetHostTest, HasEndedWhenEveryTargetHas) {
  add(0);
  add(1);
  EXPECT_FALSE(host.allEnded());
  install(0);
  host.keyPressed();
  deliver(0, 3, 4);
  run();
  EXPECT_EQ(state(0), State::kEnded);
  EXPECT_FALSE(host.allEnded());
  install(1);
  deliver(1, 3, 3, "TERM\n");
  run();
  EXPECT_FALSE(host.allEnded());
  run(4 * kSecond);
  EXPECT_TRUE(host.allEnded());
}

TEST_F(TargetHostTest, TheTimeThatAStoreTakesIsNoSilenceOfTheInstaller) {
  addAll();
  for (std::size_t i : {0u, 1u}) {
    deliver(i, 1, 1, "OFFR\n");
    deliver(i, 2, 2);
  }
  run(kSecond);
  stores[0].onCall = [&] { link.clock.advance(100 * kSecond); };
  deliver(1, 2, kNoAck, "FILE\nb.bdl\n10\n");
  deliver(0, 2, kNoAck, "FILE\na.bdl\n10\n");
  run();
  stores[0].onCall = {};
  run(29 * kSecond);
  EXPECT_EQ(state(0), State::kReceiving);
  EXPECT_EQ(state(1), State::kReceiving);
  run(2 * kSecond);
  EXPECT_EQ(state(0), State::kAnnouncing);
  EXPECT_EQ(state(1), State::kAnnouncing);
}

TEST_F(TargetHostTest, ADiskThatFailsAfterALongTimeIsFollowedByAWholeRest) {
  add(0);
  stores[0].failing = "prepare";
  stores[0].onCall = [&] {
    if (stores[0].calls.back() == "prepare") link.clock.advance(100 * kSecond);
  };
  deliver(0, 1, 1, "OFFR\n");
  deliver(0, 2, 2);
  run();
  run(9 * kSecond);
  EXPECT_EQ(state(0), State::kFailed);
  run(2 * kSecond);
  EXPECT_EQ(state(0), State::kAnnouncing);
}

TEST_F(TargetHostTest, ARemovedTargetIsSilentAndUnknown) {
  add(0);
  add(1);
  host.remove(kMacs[0]);
  EXPECT_EQ(host.find(kMacs[0]), nullptr);
  EXPECT_THAT(announcementTimes(kMacs[0], 5 * kSecond), IsEmpty());
  EXPECT_EQ(announcementTimes(kMacs[1], 5 * kSecond).size(), 5u);
}

TEST_F(TargetHostTest, ATargetAddedAgainStartsOver) {
  add(0);
  install(0);
  ASSERT_EQ(state(0), State::kInstalled);
  add(0);
  EXPECT_EQ(state(0), State::kAnnouncing);
  EXPECT_EQ(announcementTimes(kMacs[0], 3 * kSecond).size(), 3u);
}

TEST_F(TargetHostTest, AFailingSocketIsReported) {
  add(0);
  link.network->failing = "waitReadable";
  EXPECT_THROW(host.step(kSecond), SocketExc);
}

}  // namespace
}  // namespace omniset::test
