// A PC with one or more network cards.
#include "target/target_machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "target_fakes.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr MacAddress kFirstMac{{0x02, 0, 0, 0, 1, 1}};
constexpr MacAddress kSecondMac{{0x02, 0, 0, 0, 1, 2}};

struct FakeCards : NetworkCards {
  explicit FakeCards(FakeClock& time) : clock(time) {}

  std::vector<NetworkCard> bringUp() override { return cards; }
  bool hasLink(const NetworkCard& card) override { return links[card.name]; }
  std::unique_ptr<UdpSocket> makeSocket(const NetworkCard& card) override {
    auto& network = networks[card.name];
    if (!network) network = std::make_shared<FakeNetwork>();
    network->clock = &clock;
    return std::make_unique<FakeUdpSocket>(network);
  }
  void idle(Micros time) override { clock.advance(time); }

  FakeClock& clock;
  std::vector<NetworkCard> cards{{"eth0", "e1000", kFirstMac}};
  std::map<std::string, bool> links{{"eth0", true}, {"eth1", true}};
  std::map<std::string, std::shared_ptr<FakeNetwork>> networks;
};

struct TargetMachineTest : ::testing::Test {
  void addSecondCard() { cards.cards.push_back({"eth1", "", kSecondMac}); }

  void start() {
    machine = std::make_unique<TargetMachine>(
        MachineFacts{"Omniset 1.2", "Pentium, 32 MB", "sda 64 MB"}, cards, clock, store, console);
  }
  void run(Micros time) {
    const Micros end = clock.now() + time;
    while (clock.now() < end) machine->step();
  }
  void deliver(const std::string& card, const LinkFrame& frame) {
    cards.networks.at(card)->deliver(frame.datagram());
  }
  void offer(const std::string& card, const MacAddress& mac) {
    deliver(card, makeFrame(kInstallerMac, mac, 1, 1, "OFFR\n"));
  }
  // What a card sent since the last call.
  std::vector<std::string> sentBy(const std::string& card) {
    std::vector<std::string> texts;
    const auto network = cards.networks[card];
    if (!network) return texts;
    for (const auto& datagram : network->sent) {
      texts.emplace_back(frameFrom(datagram.bytes).payloadText());
    }
    network->sent.clear();
    return texts;
  }
  void installOn(const std::string& card, const MacAddress& mac) {
    offer(card, mac);
    deliver(card, makeFrame(kInstallerMac, mac, 2, 2));
    run(kSecond);
    deliver(card, makeFrame(kInstallerMac, mac, 2, kNoAck, "FILE\nautorun.scr\n0\n"));
    run(kSecond);
  }

  FakeClock clock;
  FakeCards cards{clock};
  FakeStore store;
  FakeConsole console;
  SilentTrace silence;
  std::unique_ptr<TargetMachine> machine;
};

TEST_F(TargetMachineTest, TheLabelIsTheProductWithItsVersionAndTheCard) {
  start();
  machine->step();
  EXPECT_THAT(sentBy("eth0"),
              ElementsAre("DSCV\nPentium, 32 MB\nsda 64 MB\nOmniset 1.2 eth0 (e1000)\n"));
  EXPECT_THAT(console.sentences, Contains("Announcing on eth0 (e1000)."));
}

TEST_F(TargetMachineTest, EveryCardAnnouncesOnceASecondFromItsOwnAddress) {
  addSecondCard();
  start();
  run(5 * kSecond - 1);
  for (const auto& [name, mac] : {std::pair{"eth0", kFirstMac}, std::pair{"eth1", kSecondMac}}) {
    ASSERT_THAT(cards.networks.at(name)->sent, SizeIs(5)) << name;
    const LinkFrame frame = frameFrom(cards.networks.at(name)->sent[0].bytes);
    EXPECT_EQ(frame.header().source, mac);
    EXPECT_EQ(frame.header().destination, kNobody);
  }
}

TEST_F(TargetMachineTest, NothingIsSentBeforeTheLinkIsThere) {
  cards.links["eth0"] = false;
  start();
  run(10 * kSecond);
  EXPECT_THAT(sentBy("eth0"), IsEmpty());
  cards.links["eth0"] = true;
  run(kSecond);
  EXPECT_THAT(sentBy("eth0"), SizeIs(1));
}

TEST_F(TargetMachineTest, ALinkThatGoesAndComesIsToldAndUsedAgain) {
  start();
  run(kSecond);
  cards.links["eth0"] = false;
  run(kSecond);
  EXPECT_THAT(console.sentences.back(), HasSubstr("the link is gone"));
  sentBy("eth0");
  run(3 * kSecond);
  EXPECT_THAT(sentBy("eth0"), IsEmpty());
  cards.links["eth0"] = true;
  run(kSecond);
  EXPECT_EQ(console.sentences.back(), "Announcing on eth0 (e1000).");
  EXPECT_THAT(sentBy("eth0"), SizeIs(testing::Ge(1)));
}

TEST_F(TargetMachineTest, AnOfferOnOneCardSilencesTheOthers) {
  addSecondCard();
  start();
  run(kSecond);
  sentBy("eth0"), sentBy("eth1");
  offer("eth1", kSecondMac);
  run(5 * kSecond);
  EXPECT_TRUE(machine->engaged());
  EXPECT_THAT(sentBy("eth1"), Contains("YACK\n"));
  EXPECT_THAT(sentBy("eth0"), SizeIs(testing::Le(1)));
}

TEST_F(TargetMachineTest, AnOfferOnAnotherCardMeanwhileIsNotAnswered) {
  addSecondCard();
  start();
  run(kSecond);
  installOn("eth1", kSecondMac);
  sentBy("eth0");
  offer("eth0", kFirstMac);
  run(5 * kSecond);
  EXPECT_THAT(sentBy("eth0"), IsEmpty());
}

TEST_F(TargetMachineTest, AllCardsAnnounceAgainWhenTheInstallationCameToNothing) {
  addSecondCard();
  start();
  run(kSecond);
  offer("eth1", kSecondMac);
  run(kSecond);
  ASSERT_TRUE(machine->engaged());
  sentBy("eth0"), sentBy("eth1");
  run(35 * kSecond);
  EXPECT_FALSE(machine->engaged());
  EXPECT_THAT(sentBy("eth0"), Contains(HasSubstr("DSCV")));
  EXPECT_THAT(sentBy("eth1"), Contains(HasSubstr("DSCV")));
}

// The offer is a minute old by then, and its installer has given up.
TEST_F(TargetMachineTest, AnOldOfferThatWaitedInAnotherCardIsNotTaken) {
  addSecondCard();
  start();
  run(kSecond);
  offer("eth1", kSecondMac);
  run(kSecond);
  offer("eth0", kFirstMac);
  run(35 * kSecond);
  EXPECT_FALSE(machine->engaged());
}

TEST_F(TargetMachineTest, FramesForOtherAddressesChangeNothing) {
  start();
  run(kSecond);
  offer("eth0", kSecondMac);
  offer("eth0", kStrangerMac);
  deliver("eth0", makeFrame(kInstallerMac, kNobody, 1, 1, "OFFR\n"));
  run(kSecond);
  EXPECT_FALSE(machine->engaged());
}

TEST_F(TargetMachineTest, ItMayRebootAfterTheRebootCommand) {
  start();
  run(kSecond);
  installOn("eth0", kFirstMac);
  EXPECT_FALSE(machine->mayReboot());
  deliver("eth0", makeFrame(kInstallerMac, kFirstMac, 3, 3, "TERM\nInstallation successful\n"));
  run(10 * kSecond);
  EXPECT_TRUE(machine->mayReboot());
}

TEST_F(TargetMachineTest, AKeyRebootsAnInstalledPcOnly) {
  start();
  run(kSecond);
  machine->keyPressed();
  run(20 * kSecond);
  EXPECT_FALSE(machine->mayReboot());
  installOn("eth0", kFirstMac);
  sentBy("eth0");
  machine->keyPressed();
  run(10 * kSecond);
  EXPECT_THAT(sentBy("eth0"), Contains("TERM\n"));
  EXPECT_TRUE(machine->mayReboot());
}

TEST_F(TargetMachineTest, WhatIsSaidOfTheDisksCanChange) {
  start();
  run(kSecond);
  sentBy("eth0");
  machine->describeDisks("sda 64 MB, installed");
  run(2 * kSecond);
  EXPECT_THAT(sentBy("eth0"), Contains(HasSubstr("\nsda 64 MB, installed\n")));
}

TEST_F(TargetMachineTest, ACardWhoseSocketFailsIsToldAndTriedAgain) {
  start();
  run(kSecond);
  cards.networks.at("eth0")->failing = "waitReadable";
  run(kSecond);
  EXPECT_THAT(console.sentences, Contains(HasSubstr("eth0 (e1000): select() failed")));
  cards.networks.at("eth0")->failing.clear();
  sentBy("eth0");
  run(2 * kSecond);
  EXPECT_THAT(sentBy("eth0"), Contains(HasSubstr("DSCV")));
}

TEST_F(TargetMachineTest, ACardThatFailsDuringAnInstallationLetsTheDiskGo) {
  addSecondCard();
  start();
  run(kSecond);
  offer("eth0", kFirstMac);
  run(kSecond);
  ASSERT_TRUE(machine->engaged());
  cards.networks.at("eth0")->failing = "receiveFrom";
  offer("eth0", kFirstMac);
  sentBy("eth1");
  run(2 * kSecond);
  EXPECT_THAT(store.calls, Contains("abandon"));
  EXPECT_FALSE(machine->engaged());
  EXPECT_THAT(sentBy("eth1"), Contains(HasSubstr("DSCV")));
}

TEST_F(TargetMachineTest, TheTimeThatTheDiskTakesIsNoSilenceOfTheInstaller) {
  start();
  run(kSecond);
  store.onCall = [&] { clock.advance(100 * kSecond); };
  offer("eth0", kFirstMac);
  deliver("eth0", makeFrame(kInstallerMac, kFirstMac, 2, 2));
  run(102 * kSecond);
  ASSERT_THAT(store.calls, ElementsAre("prepare"));
  ASSERT_NE(machine->engaged(), nullptr);
  store.onCall = {};
  run(27 * kSecond);
  EXPECT_NE(machine->engaged(), nullptr);
  run(4 * kSecond);
  EXPECT_EQ(machine->engaged(), nullptr);
}

TEST_F(TargetMachineTest, ACardThatCannotSendLeavesTheOthersAlone) {
  addSecondCard();
  start();
  cards.networks["eth0"] = std::make_shared<FakeNetwork>();
  cards.networks["eth0"]->failing = "sendTo";
  run(25 * kSecond);
  EXPECT_THAT(sentBy("eth1"), SizeIs(25));
  EXPECT_THAT(console.sentences,
              Contains(HasSubstr("eth0 (e1000) cannot be announced: sendto() failed")).Times(3));
  cards.networks["eth0"]->failing.clear();
  run(10 * kSecond);
  EXPECT_THAT(sentBy("eth0"), Not(IsEmpty()));
}

TEST_F(TargetMachineTest, WithoutACardTimePasses) {
  cards.cards.clear();
  start();
  const Micros before = clock.now();
  machine->step();
  EXPECT_GT(clock.now(), before);
}

}  // namespace
}  // namespace omniset::test
