// What the boot service tells, as events. The service itself runs on a simulated network.

#include "cli/boot_events.h"

#include <gmock/gmock.h>

#include "boot/boot_images.h"
#include "cli/stoppable_socket.h"
#include "tests/boot/boot_world.h"
#include "tests/fakes/captured_trace.h"

namespace omniset::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr MacAddress kOther{{0x02, 0, 0, 0, 0, 0x0B}};
constexpr std::uint32_t kGiven = BootWorld::kClientAddress;

std::string refuseOther(const MacAddress& client) {
  return client == kOther ? "no" : "";
}

// The events that were not taken yet, without the MAC address of the usual client.
std::vector<std::string> told(BootEvents& events) {
  std::vector<std::string> lines;
  while (const auto event = events.take()) {
    const std::string line = bootEventLine(*event);
    const std::string usual = kClientMac.text() + "  ";
    lines.push_back(line.starts_with(usual) ? line.substr(usual.size()) : line);
  }
  return lines;
}

// As a boot with the boot firmware's three questions goes.
const std::vector<std::string> kWholeBoot = {
    "asked to boot, gets 192.168.88.20",
    "asked for '/image', gets the boot program",
    "boot program sent (10824 bytes)",
    "asked for 'pxelinux.cfg/default', gets the boot configuration",
    "boot configuration sent (64 bytes)",
    "asked for 'linux', gets the kernel",
    "kernel sent (20000 bytes)",
    "asked for 'initrd.rgz', gets the RAM disk",
    "RAM disk sent (9000 bytes)",
    "all images sent; it starts the installer system now"};

class BootEventsTest : public testing::Test {
 protected:
  void start() {
    PixieServices services = world.services();
    services.watcher = &events;
    world.service.emplace(0, PixieConfig{true, kGiven}, services);
  }
  void bootAt(BootClient& client, Micros delay) {
    world.network.events().after(delay, [&client] { client.start(); });
  }

  SilentTrace silent;
  BootWorld world;
  BootEvents events{kGiven, refuseOther};
};

}  // namespace

TEST_F(BootEventsTest, BootIsToldStepByStepAndItsQuestionsOnce) {
  start();
  BootClient client(world.network, BootWorld::pxePlan());
  bootAt(client, kSecond);
  world.run(10 * kSecond);
  EXPECT_TRUE(client.isDone());
  EXPECT_EQ(told(events), kWholeBoot);
}

TEST_F(BootEventsTest, SecondBootOfAPcIsToldAnew) {
  start();
  BootClient first(world.network, BootWorld::pxePlan());
  BootClient second(world.network, BootWorld::pxePlan());
  bootAt(first, kSecond);
  world.run(10 * kSecond);
  EXPECT_EQ(told(events), kWholeBoot);
  bootAt(second, kSecond);
  world.run(10 * kSecond);
  EXPECT_EQ(told(events), kWholeBoot);
}

TEST_F(BootEventsTest, EtherbootPcGetsItsOneImage) {
  start();
  BootClient client(world.network, BootWorld::etherbootPlan());
  bootAt(client, kSecond);
  world.run(10 * kSecond);
  EXPECT_THAT(told(events), ElementsAre("asked to boot, gets 192.168.88.20",
                                        "asked for '/tftpboot/own.nbi', gets the Etherboot image",
                                        "Etherboot image sent (48372 bytes)",
                                        "all images sent; it starts the installer system now"));
}

TEST_F(BootEventsTest, RefusedPcGetsNoReplyAndIsToldOnce) {
  start();
  BootClient other(world.network, BootWorld::pxePlan(kOther));
  bootAt(other, kSecond);
  world.run(30 * kSecond);
  EXPECT_THAT(world.network.sent(), IsEmpty());
  EXPECT_THAT(told(events), ElementsAre("02:00:00:00:00:0B  asked to boot, gets no answer: no"));
}

TEST_F(BootEventsTest, PcThatFetchesNothingIsToldAndMayAskAgain) {
  start();
  for (const Micros delay : {kSecond, 2 * kSecond, 40 * kSecond}) {
    world.network.events().after(
        delay, [this] { world.network.sendToService(pxeRequest(), 68, kBootpServerPort); });
  }
  world.run(80 * kSecond);
  const auto lines = told(events);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "asked to boot, gets 192.168.88.20");
  EXPECT_TRUE(lines[1].starts_with("fetched nothing: "));
  EXPECT_EQ(lines[2], lines[0]);
  EXPECT_EQ(lines[3], lines[1]);
}

// As two do whose firmware is not content with the replies.
TEST_F(BootEventsTest, PcsThatAskInTurnAreEachToldEachTime) {
  for (const MacAddress& client : {kClientMac, kOther, kOther, kClientMac}) {
    events.answered(client);
  }
  EXPECT_THAT(told(events), ElementsAre("asked to boot, gets 192.168.88.20",
                                        "02:00:00:00:00:0B  asked to boot, gets 192.168.88.20",
                                        "asked to boot, gets 192.168.88.20"));
}

TEST_F(BootEventsTest, PcThatFallsSilentIsTold) {
  start();
  BootClient client(world.network, BootWorld::pxePlan());
  bootAt(client, kSecond);
  world.setImage(kKernelImage, 5'000'000);
  std::size_t sent = 0;
  // Power off as soon as the kernel is on its way.
  std::function<void()> watch = [&] {
    sent = world.network.sent().size();
    if (sent > 100) {
      for (std::uint16_t port = 2070; port < 2100; ++port) world.network.hangUp(port);
    } else {
      world.network.events().after(kMillisecond, watch);
    }
  };
  world.network.events().after(kSecond, watch);
  world.run(30 * kSecond);
  const auto lines = told(events);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "fell silent while it got the kernel; it may boot again");
}

TEST_F(BootEventsTest, StopEndsTheServiceWithinATransfer) {
  PixieServices services = world.services();
  services.watcher = &events;
  services.makeSocket = [this]() -> std::unique_ptr<UdpSocket> {
    return std::make_unique<StoppableSocket>(world.network.makeSocket(),
                                             world.service->stopEvent());
  };
  world.service.emplace(0, PixieConfig{true, kGiven}, services);
  world.setImage(kKernelImage, 50'000'000);
  BootClient client(world.network, BootWorld::pxePlan());
  bootAt(client, 0);
  const Micros start = world.network.events().now();
  EXPECT_THROW(world.run(5 * kSecond), StopRequested);
  EXPECT_LE(world.network.events().now() - start, 6 * kSecond);
  EXPECT_EQ(told(events).back(), "asked for 'linux', gets the kernel");
}

TEST_F(BootEventsTest, RefusedPcsAreRememberedWithinBounds) {
  BootEvents all(kGiven, [](const MacAddress&) { return std::string("no"); });
  for (int i = 0; i < 10'000; ++i) {
    const MacAddress mac{
        {2, 0, 0, 0, static_cast<std::uint8_t>(i >> 8), static_cast<std::uint8_t>(i)}};
    EXPECT_FALSE(all.mayBoot(mac));
  }
  EXPECT_EQ(told(all).size(), 4096u);
}

}  // namespace omniset::test
