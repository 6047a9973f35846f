#include "boot/pixie.h"

#include <gmock/gmock.h>

#include "core/error.h"
#include "tests/boot/boot_world.h"
#include "tests/contract/raised_text.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr MacAddress kOtherMac{{0x02, 0, 0, 0, 0, 0x0B}};
constexpr std::uint32_t kOtherAddress = ipv4(192, 168, 88, 21);

class PixieTest : public testing::Test {
 protected:
  // Lets a client boot at a time from now on.
  void bootAt(BootClient& client, Micros delay) {
    world_.network.events().after(delay, [&client] { client.start(); });
  }
  void send(const Bytes& datagram, std::uint16_t toPort, Micros delay,
            std::uint16_t fromPort = 2000) {
    world_.network.events().after(delay, [this, datagram, toPort, fromPort] {
      world_.network.sendToService(datagram, fromPort, toPort);
    });
  }
  std::size_t repliesSent() const {
    return static_cast<std::size_t>(
        std::count_if(world_.network.sent().begin(), world_.network.sent().end(),
                      [](const BootNetwork::Sent& sent) { return sent.to.port == 68; }));
  }

  CapturedTrace trace_;
  BootWorld world_;
};

TEST_F(PixieTest, TracesTheConfigurationItStartsWith) {
  world_.start({true, BootWorld::kClientAddress});
  world_.start({false, 0});
  EXPECT_EQ(trace_.text(), "conf: en:1, addr:192.168.88.20\nconf: en:0, addr:0.0.0.0\n");
}

TEST_F(PixieTest, APxeClientIsAnsweredAndGetsFourImagesInTheirOrder) {
  world_.start();
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, kSecond);
  world_.run(10 * kSecond);
  EXPECT_EQ(client.files(), world_.pxeImages());
  EXPECT_THAT(trace_.text(), HasSubstr("REQ RECEIVED:\n"));
  EXPECT_THAT(trace_.text(), HasSubstr("ALL DONE\n"));
}

TEST_F(PixieTest, WhatIsAskedForDoesNotMatterOnlyHowOften) {
  world_.start();
  BootClient::Plan plan = BootWorld::pxePlan();
  plan.files = {"anything", "pxelinux.cfg/01-02-00-00-00-00-0a", "pxelinux.cfg/C0A85814",
                "pxelinux.cfg/default"};
  BootClient client(world_.network, plan);
  bootAt(client, 0);
  world_.run(10 * kSecond);
  EXPECT_EQ(client.files(), world_.pxeImages());
}

// Boot firmware asks for offers, once more, and then for the address.
TEST_F(PixieTest, EveryRequestOfAClientIsAnsweredUntilItFetchesSomething) {
  world_.start();
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, 0);
  world_.run(10 * kSecond);
  EXPECT_EQ(repliesSent(), 3u);
  EXPECT_TRUE(client.isDone());
}

TEST_F(PixieTest, TheWatcherIsToldEachStepOfABoot) {
  world_.start();
  BootClient::Plan plan = BootWorld::pxePlan();
  plan.asks = 1;
  BootClient client(world_.network, plan);
  bootAt(client, 0);
  world_.run(10 * kSecond);
  EXPECT_THAT(world_.watcher.events,
              ElementsAre("answered 02:00:00:00:00:0A", "125 for /image", "125 sent, 10824",
                          "126 for pxelinux.cfg/default", "126 sent, 64", "120 for linux",
                          "120 sent, 20000", "121 for initrd.rgz", "121 sent, 9000", "all sent"));
}

TEST_F(PixieTest, WithoutAWatcherItServesTheSame) {
  PixieServices services = world_.services();
  services.watcher = nullptr;
  world_.service.emplace(0, PixieConfig{true, BootWorld::kClientAddress}, services);
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, 0);
  world_.run(10 * kSecond);
  EXPECT_TRUE(client.isDone());
}

TEST_F(PixieTest, APxeClientIsOfferedTheBootFile) {
  world_.start();
  send(pxeRequest(), 67, 0);
  world_.run(kSecond);
  ASSERT_EQ(repliesSent(), 1u);
  const std::string_view file = asText(std::span(world_.network.sent()[0].bytes).subspan(108, 128));
  EXPECT_EQ(file.substr(0, file.find('\0')), "/image");
}

TEST_F(PixieTest, ABootRequestIsAnsweredAtOnce) {
  world_.start();
  send(pxeRequest(), 67, 0);
  const Micros before = world_.network.events().now();
  world_.run(kSecond);
  ASSERT_EQ(repliesSent(), 1u);
  EXPECT_LE(world_.network.sent()[0].time - before, 2 * kMillisecond);
}

// Now and then the service looks whether somebody asks to boot.
TEST_F(PixieTest, AReadRequestIsAnsweredAtOnceWheneverItComes) {
  for (Micros delay = 2 * kMillisecond; delay < 120 * kMillisecond; delay += kMillisecond) {
    BootWorld world;
    world.start();
    const Micros before = world.network.events().now();
    world.network.sendToService(pxeRequest(), 68, 67);
    world.network.events().after(
        delay, [&] { world.network.sendToService(readRequest("/image"), 2000, 69); });
    world.run(kSecond);
    ASSERT_GE(world.network.sent().size(), 2u);
    EXPECT_LE(world.network.sent()[1].time - before, delay + 2 * kMillisecond) << delay;
  }
}

TEST_F(PixieTest, TheFirstAnswerToAReadRequestLeavesAtOnce) {
  world_.start();
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, 0);
  world_.run(10 * kSecond);
  ASSERT_TRUE(client.isDone());
  // Two times the network's delay, and at most a glance at the other socket.
  EXPECT_LE(client.slowestFirstAnswer(), 100 + kMillisecond);
}

TEST_F(PixieTest, AnEtherbootClientGetsOneImageOfLoaderKernelAndRamDisk) {
  world_.setImage(kKernelImage, 836'214);
  world_.setImage(kRamDiskImage, 269'542);
  world_.start();
  BootClient client(world_.network, BootWorld::etherbootPlan());
  bootAt(client, 0);
  world_.run(20 * kSecond);
  ASSERT_TRUE(client.isDone());
  EXPECT_EQ(client.files()[0].size(), 1'125'128u);
  EXPECT_EQ(client.files()[0], world_.etherbootImage());
  EXPECT_EQ(world_.watcher.events.back(), "all sent");
}

TEST_F(PixieTest, AKernelShorterThanItsHeadIsLeftOutOfTheEtherbootImage) {
  world_.setImage(kKernelImage, 3000);
  world_.start();
  BootClient client(world_.network, BootWorld::etherbootPlan());
  bootAt(client, 0);
  world_.run(5 * kSecond);
  ASSERT_TRUE(client.isDone());
  EXPECT_EQ(client.files()[0], world_.etherbootImage());
}

TEST_F(PixieTest, AnEtherbootClientThatFetchesNothingStillEndsWithAllDone) {
  world_.start();
  send(etherbootRequest(), 67, 0);
  world_.run(25 * kSecond);
  EXPECT_THAT(trace_.text(), EndsWith("TFTP timeout\nALL DONE\n"));
  EXPECT_THAT(world_.watcher.events,
              ElementsAre("answered 02:00:00:00:00:0A", "127 not requested"));
}

TEST_F(PixieTest, ASequenceThatTimesOutIsClosedAndTheNextRequestStartsAFreshOne) {
  world_.start();
  BootClient::Plan plan = BootWorld::pxePlan();
  plan.files = {"/image"};  // and nothing more
  BootClient broken(world_.network, plan);
  bootAt(broken, 0);
  bool closed = false;
  world_.network.events().after(29 * kSecond, [&] { closed = !world_.network.isBound(69); });
  BootClient::Plan second = BootWorld::pxePlan();
  second.firstPort = 3000;
  BootClient client(world_.network, second);
  bootAt(client, 30 * kSecond);
  world_.run(29 * kSecond);
  EXPECT_EQ(broken.files()[0], world_.images[kNetworkBootProgramImage]);
  EXPECT_THAT(trace_.text(), Not(HasSubstr("ALL DONE")));
  EXPECT_THAT(world_.watcher.events, testing::Contains("126 not requested"));
  world_.run(20 * kSecond);
  EXPECT_TRUE(closed);
  EXPECT_EQ(client.files(), world_.pxeImages());
}

TEST_F(PixieTest, AClientThatFallsSilentWithinAnImageEndsItsSequence) {
  world_.start();
  send(pxeRequest(), 67, 0);
  send(readRequest("/image"), 69, kSecond);
  world_.run(10 * kSecond);
  EXPECT_THAT(world_.watcher.events,
              ElementsAre("answered 02:00:00:00:00:0A", "125 for /image", "125 broken off"));
  EXPECT_FALSE(world_.network.isBound(69));
}

TEST_F(PixieTest, ARepeatedReadRequestCountsAsTheNextOne) {
  world_.start();
  send(pxeRequest(), 67, 0);
  send(readRequest("/image"), 69, kSecond, 2001);
  send(readRequest("/image"), 69, kSecond + 1, 2001);
  world_.images[kNetworkBootProgramImage] = {1, 2, 3};
  world_.run(10 * kSecond);
  EXPECT_THAT(world_.watcher.events,
              ElementsAre("answered 02:00:00:00:00:0A", "125 for /image", "125 sent, 3",
                          "126 for /image", "126 sent, 64", "120 not requested"));
}

TEST_F(PixieTest, TwoClientsAtOnceBootOneAfterTheOther) {
  world_.start();
  BootClient first(world_.network, BootWorld::pxePlan());
  BootClient::Plan plan = BootWorld::pxePlan(kOtherMac);
  plan.firstPort = 3000;
  BootClient second(world_.network, plan);
  bootAt(first, 0);
  bootAt(second, 100 * kMillisecond);
  world_.run(30 * kSecond);
  EXPECT_EQ(first.files(), world_.pxeImages());
  EXPECT_EQ(second.files(), world_.pxeImages());
}

TEST_F(PixieTest, ManyClientsAtOnceAllBootInTheEnd) {
  world_.start();
  std::deque<BootClient> clients;
  for (std::uint8_t i = 0; i < 8; ++i) {
    BootClient::Plan plan = BootWorld::pxePlan({{2, 0, 0, 0, 1, i}});
    plan.firstPort = static_cast<std::uint16_t>(2100 + 100 * i);
    plan.lives = 5;
    clients.emplace_back(world_.network, plan);
    bootAt(clients.back(), i * 10 * kMillisecond);
  }
  world_.run(600 * kSecond);
  for (const BootClient& client : clients) EXPECT_EQ(client.files(), world_.pxeImages());
}

TEST_F(PixieTest, AClientThatHasFetchedGoesBehindOthersNextTime) {
  for (const int number : {kNetworkBootProgramImage, kKernelImage, kRamDiskImage}) {
    world_.setImage(number, 100);
  }
  world_.start();
  send(pxeRequest(), 67, 0);
  send(readRequest("/image"), 69, 100 * kMillisecond);
  send(pxeRequest(kOtherMac), 67, 200 * kMillisecond);
  send(pxeRequest(), 67, 210 * kMillisecond);
  for (int i = 3; i <= 5; ++i) send(readRequest("more"), 69, i * 100 * kMillisecond);
  world_.run(2 * kSecond);
  const auto& told = world_.watcher.events;
  const auto done = std::find(told.begin(), told.end(), "all sent");
  ASSERT_GE(told.end() - done, 2);
  EXPECT_EQ(done[1], "answered 02:00:00:00:00:0B");
}

// Its firmware may refuse a reply without leases, or a firewall keep it from the images.
TEST_F(PixieTest, AClientThatOnlyAsksDoesNotKeepOthersFromBooting) {
  for (const Micros pause : {kSecond / 2, 5 * kSecond, 19 * kSecond, 25 * kSecond}) {
    BootWorld world;
    world.start();
    const auto every = [&](auto self) -> void {
      world.network.sendToService(pxeRequest(kOtherMac), 68, 67);
      world.network.events().after(pause, [self] { self(self); });
    };
    every(every);
    BootClient::Plan plan = BootWorld::pxePlan();
    plan.lives = 3;
    BootClient client(world.network, plan);
    world.network.events().after(10 * kSecond, [&] { client.start(); });
    world.run(180 * kSecond);
    EXPECT_EQ(client.files(), world.pxeImages()) << pause;
  }
}

// The requests of others wait, whatever they are, without a word about them.
TEST_F(PixieTest, AWaitingEtherbootClientIsNotTakenForTheKindOfOthersThatAsk) {
  world_.start();
  send(etherbootRequest(), 67, 0);
  send(pxeRequest(kOtherMac), 67, kSecond);
  send(etherbootRequest(), 67, 2 * kSecond);
  send(readRequest("own"), 69, 3 * kSecond);
  world_.run(4 * kSecond);
  EXPECT_THAT(world_.watcher.events, testing::Contains("127 for own"));
}

TEST_F(PixieTest, ARefusedClientDoesNotChangeWhatOthersGet) {
  world_.start();
  world_.watcher.refused.insert(kOtherMac);
  send(pxeRequest(kOtherMac), 67, 0);
  send(etherbootRequest(), 67, 2 * kSecond);
  send(readRequest("own"), 69, 3 * kSecond);
  world_.run(4 * kSecond);
  EXPECT_THAT(world_.watcher.events, testing::Contains("127 for own"));
}

TEST_F(PixieTest, OfAClientThatAskedOftenWhileAnotherWasServedTheLatestRequestIsAnswered) {
  world_.setImage(kKernelImage, 512);
  world_.start();
  send(pxeRequest(), 67, 0);
  send(readRequest("/image"), 69, 100 * kMillisecond);
  for (std::uint8_t i = 1; i <= 5; ++i) {
    Bytes request = pxeRequest(kOtherMac);
    request[7] = i;
    send(request, 67, i * 200 * kMillisecond);
  }
  world_.run(10 * kSecond);
  ASSERT_EQ(repliesSent(), 2u);
  EXPECT_EQ(world_.network.sent().back().bytes[7], 5);
}

TEST_F(PixieTest, ASupersededEtherbootSequenceIsNotCalledDone) {
  world_.start();
  send(etherbootRequest(), 67, 0);
  send(etherbootRequest(), 67, kSecond);
  world_.run(3 * kSecond);
  EXPECT_EQ(repliesSent(), 2u);
  EXPECT_THAT(trace_.text(), Not(HasSubstr("ALL DONE")));
  EXPECT_THAT(world_.watcher.events,
              ElementsAre("answered 02:00:00:00:00:0A", "answered 02:00:00:00:00:0A"));
}

TEST_F(PixieTest, NoiseOnTheTftpPortHidesNeitherARequestNorTheStop) {
  world_.start();
  send(pxeRequest(), 67, 0);
  for (int i = 0; i < 30'000; ++i) send(Bytes{0}, 69, i * 40 * kMillisecond);
  BootClient::Plan plan = BootWorld::pxePlan(kOtherMac);
  plan.lives = 5;
  BootClient client(world_.network, plan);
  bootAt(client, kSecond);
  const Micros before = world_.network.events().now();
  world_.run(100 * kSecond);
  EXPECT_LE(world_.network.events().now() - before, 101 * kSecond);
}

TEST_F(PixieTest, AfterAPxeClientAnEtherbootClientIsServedAsOne) {
  world_.start();
  BootClient pxe(world_.network, BootWorld::pxePlan());
  bootAt(pxe, 0);
  BootClient::Plan plan = BootWorld::etherbootPlan(kOtherMac);
  plan.firstPort = 3000;
  BootClient etherboot(world_.network, plan);
  bootAt(etherboot, 20 * kSecond);
  world_.run(40 * kSecond);
  ASSERT_TRUE(etherboot.isDone());
  EXPECT_EQ(etherboot.files()[0], world_.images[kNetworkBootProgramImage]);
}

TEST_F(PixieTest, AClientThatMayNotBootIsNotAnswered) {
  world_.start();
  world_.watcher.refused.insert(kClientMac);
  send(pxeRequest(), 67, 0);
  BootClient::Plan plan = BootWorld::pxePlan(kOtherMac);
  BootClient client(world_.network, plan);
  bootAt(client, kSecond);
  world_.run(20 * kSecond);
  EXPECT_EQ(repliesSent(), 3u);
  EXPECT_TRUE(client.isDone());
}

TEST_F(PixieTest, WhatIsNoBootRequestIsTracedAndGetsNoAnswer) {
  world_.start();
  send(Bytes{}, 67, 0);
  send(Bytes(3000, 0xFF), 67, 0);
  send(requestWith({option(53, "\x01")}), 67, 0);
  world_.run(3 * kSecond);
  EXPECT_EQ(trace_.text(),
            "conf: en:1, addr:192.168.88.20\n"
            "recv bytes:0\nINVALID REQUEST\n"
            "recv bytes:1264\nINVALID REQUEST\n"
            "recv bytes:244\nINVALID REQUEST\n");
  EXPECT_THAT(world_.network.sent(), IsEmpty());
}

TEST_F(PixieTest, AShortRequestIsNotReadAsTheLongOneBeforeIt) {
  world_.start();
  world_.watcher.refused.insert(kClientMac);
  send(pxeRequest(), 67, 0);
  Bytes head = requestHead();
  send(head, 67, 10 * kMillisecond);
  world_.run(2 * kSecond);
  EXPECT_THAT(trace_.text(), EndsWith("recv bytes:240\nINVALID REQUEST\n"));
}

TEST_F(PixieTest, OtherTrafficDoesNotDisturbAClientThatIsAboutToFetch) {
  world_.start();
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, 0);
  for (int i = 0; i < 400; ++i) send(requestWith({option(53, "\x01")}), 67, i * 10 * kMillisecond);
  world_.run(15 * kSecond);
  EXPECT_EQ(client.files(), world_.pxeImages());
}

TEST_F(PixieTest, AFloodOfRequestsDoesNotKeepAClientFromItsAnswer) {
  world_.start();
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, 0);
  for (int i = 0; i < 20'000; ++i) send(requestWith({option(53, "\x01")}), 67, i * 200);
  world_.run(20 * kSecond);
  EXPECT_EQ(client.files(), world_.pxeImages());
}

TEST_F(PixieTest, AFloodOfRequestsHoldsAnAnswerUpForMomentsOnly) {
  world_.start();
  send(pxeRequest(), 67, 0);
  for (int i = 0; i < 5'000; ++i) send(requestWith({option(53, "\x01")}), 67, i * 200);
  const Micros before = world_.network.events().now();
  world_.run(kSecond);
  ASSERT_EQ(repliesSent(), 1u);
  EXPECT_LE(world_.network.sent()[0].time - before, 50 * kMillisecond);
}

TEST_F(PixieTest, AReplyThatCannotBeSentIsTracedAndTheServiceGoesOn) {
  world_.start();
  world_.network.refuseSending(true);
  send(pxeRequest(), 67, 0);
  world_.run(kSecond);
  EXPECT_THAT(trace_.text(), EndsWith("sendto failed\nFAILED TO REPLY\n"));
  EXPECT_FALSE(world_.network.isBound(69));
  world_.network.refuseSending(false);
  BootClient client(world_.network, BootWorld::pxePlan());
  bootAt(client, 0);
  world_.run(10 * kSecond);
  EXPECT_TRUE(client.isDone());
}

TEST_F(PixieTest, DisabledItSendsNothingUntilAConfigurationEnablesIt) {
  world_.start({false, 0});
  send(pxeRequest(), 67, 0);
  BootpResponder responder("/image", world_.network.makeSocket(), world_.addresses);
  const Micros before = SystemClock().now();
  EXPECT_TRUE(world_.service->step(responder));  // a second of doing nothing
  const Micros idle = SystemClock().now() - before;
  EXPECT_GE(idle, kSecond / 2);
  EXPECT_LE(idle, 10 * kSecond);  // of a machine with other work
  EXPECT_THAT(world_.network.sent(), IsEmpty());
  world_.service->configure({true, BootWorld::kClientAddress});
  send(pxeRequest(), 67, kSecond / 2);
  EXPECT_TRUE(world_.service->step(responder));
  EXPECT_THAT(trace_.text(), HasSubstr("new conf: en:1, addr:192.168.88.20\n"));
  EXPECT_EQ(repliesSent(), 1u);
}

// They have given up, or ask again: each would be waited for in vain.
TEST_F(PixieTest, WhoAskedWhileItWasDisabledIsNotAnsweredLater) {
  world_.start({true, BootWorld::kClientAddress});
  BootpResponder responder("/image", world_.network.makeSocket(), world_.addresses);
  // One that is heard while it is still enabled, behind one that is not to be answered.
  world_.watcher.refused.insert(kOtherMac);
  send(pxeRequest(kOtherMac), 67, 0);
  send(pxeRequest({{2, 0, 0, 0, 4, 99}}), 67, kMillisecond / 2);
  EXPECT_TRUE(world_.service->step(responder));
  world_.service->configure({false, BootWorld::kClientAddress});
  EXPECT_TRUE(world_.service->step(responder));
  for (std::uint8_t i = 0; i < 30; ++i) send(pxeRequest({{2, 0, 0, 0, 4, i}}), 67, 0);
  send(pxeRequest(), 67, 0);
  world_.service->configure({true, BootWorld::kClientAddress});
  EXPECT_TRUE(world_.service->step(responder));
  EXPECT_EQ(repliesSent(), 0u);
}

TEST_F(PixieTest, EachRoundTakesOneConfiguration) {
  world_.start();
  BootpResponder responder("/image", world_.network.makeSocket(), world_.addresses);
  world_.service->configure({true, kOtherAddress});
  world_.service->configure({true, BootWorld::kClientAddress});
  trace_.clear();
  EXPECT_TRUE(world_.service->step(responder));
  EXPECT_EQ(trace_.text(), "new conf: en:1, addr:192.168.88.21\n");
  EXPECT_TRUE(world_.service->step(responder));
  EXPECT_EQ(trace_.text(),
            "new conf: en:1, addr:192.168.88.21\nnew conf: en:1, addr:192.168.88.20\n");
}

TEST_F(PixieTest, TheConfiguredAddressIsWhatClientsGetAndWhereImagesGo) {
  world_.start();
  world_.service->configure({true, kOtherAddress});
  send(pxeRequest(), 67, 10);
  send(readRequest("/image"), 69, kSecond);
  world_.run(3 * kSecond);
  const auto& sent = world_.network.sent();
  ASSERT_GE(sent.size(), 2u);
  EXPECT_EQ(sent[0].bytes.size(), 245u);
  EXPECT_EQ(Bytes(sent[0].bytes.begin() + 16, sent[0].bytes.begin() + 20),
            Bytes({192, 168, 88, 21}));
  EXPECT_EQ(sent[1].to.address, kOtherAddress);
}

TEST_F(PixieTest, AStopRequestEndsItBeforeTheNextRound) {
  world_.start();
  world_.service->stopEvent().set();
  world_.service->run();
  EXPECT_THAT(world_.network.sent(), IsEmpty());
}

TEST_F(PixieTest, AStopRequestIsNoticedWithinASecondWhileNobodyAsks) {
  world_.start();
  const Micros before = world_.network.events().now();
  world_.run(100 * kMillisecond);
  EXPECT_LE(world_.network.events().now() - before, 100 * kMillisecond + kSecond);
}

TEST_F(PixieTest, AStopRequestEndsTheWaitForAClientThatHasFetchedNothing) {
  world_.start();
  send(pxeRequest(), 67, 0);
  const Micros before = world_.network.events().now();
  world_.run(3 * kSecond);
  EXPECT_LE(world_.network.events().now() - before, 3 * kSecond + 100 * kMillisecond);
}

TEST_F(PixieTest, AStopRequestTakesEffectAfterTheImagesAreServed) {
  world_.start();
  send(pxeRequest(), 67, 0);
  send(readRequest("/image"), 69, kSecond);
  const Micros before = world_.network.events().now();
  world_.run(2 * kSecond);
  EXPECT_EQ(world_.network.events().now() - before, 6 * kSecond + 50);
}

TEST_F(PixieTest, WithoutTheAddressesOfThisComputerItEnds) {
  class NoTable : public LocalAddresses {
   public:
    std::vector<LocalAddress> list() override { throw Error("GetIpAddrTable"); }
  } none;
  PixieServices services = world_.services();
  Pixie service(0, {true, BootWorld::kClientAddress},
                {services.makeSocket, none, services.clock, services.loadImage, services.random});
  send(pxeRequest(), 67, 0);
  EXPECT_THAT(raisedText<Error>([&] { service.run(); }), StartsWith("GetIpAddrTable"));
}

TEST_F(PixieTest, ATakenPortEndsIt) {
  world_.start();
  world_.network.take(67);
  EXPECT_THAT(raisedText<SocketExc>([&] { world_.service->run(); }), StartsWith("bind failed"));
}

TEST_F(PixieTest, ATakenTftpPortEndsItWhenAClientAsks) {
  world_.start();
  world_.network.take(69);
  send(pxeRequest(), 67, 0);
  EXPECT_THAT(raisedText<SocketExc>([&] { world_.service->run(); }), StartsWith("bind failed"));
}

TEST_F(PixieTest, FailuresOfTheSocketHaveTheirTexts) {
  const auto network = std::make_shared<FakeNetwork>();
  PixieServices services = world_.services();
  services.makeSocket = [&] { return std::make_unique<FakeUdpSocket>(network); };
  Pixie service(0, {true, BootWorld::kClientAddress}, services);
  network->failing = "waitReadable";
  EXPECT_THAT(raisedText<Error>([&] { service.run(); }), StartsWith("select failed"));
  network->failing = "receiveFrom";
  network->deliver({});
  EXPECT_THAT(raisedText<Error>([&] { service.run(); }), StartsWith("recv failed"));
}

TEST_F(PixieTest, ATftpSocketThatCannotBeHadEndsItWhenAClientAsks) {
  const auto network = std::make_shared<FakeNetwork>();
  const auto exhausted = std::make_shared<FakeNetwork>();
  exhausted->failing = "open";
  int sockets = 0;
  PixieServices services = world_.services();
  services.makeSocket = [&] {
    return std::make_unique<FakeUdpSocket>(++sockets == 1 ? network : exhausted);
  };
  Pixie service(0, {true, BootWorld::kClientAddress}, services);
  network->deliver(pxeRequest());
  EXPECT_THAT(raisedText<SocketExc>([&] { service.run(); }),
              StartsWith("failed to create TFTP socket"));
}

}  // namespace
}  // namespace omniset::test
