// Network booting as the operator deals with it, with a service that a test lets end.
#include "ui/workflow/net_booting.h"

#include <gmock/gmock.h>

#include "boot/boot_checks.h"
#include "core/error.h"
#include "tests/fakes/fake_local_addresses.h"
#include "tests/ui/workflow_fixture.h"

namespace omniset {

bool operator==(const PixieConfig& a, const PixieConfig& b) {
  return a.enabled == b.enabled && a.clientAddress == b.clientAddress;
}

}  // namespace omniset

namespace omniset::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint32_t kNearby = ipv4(192, 168, 88, 10);
constexpr std::uint32_t kFar = ipv4(10, 0, 0, 10);
constexpr char kPortTaken[] = "bind failed: Address already in useError code: 98";

struct PlayedBootService : BootServiceRun {
  void start(const PixieConfig& config) override {
    ended = false;
    starts.push_back(config);
  }
  void configure(const PixieConfig& config) override { configured.push_back(config); }
  bool hasEnded() const override { return ended; }
  std::string reason() const override { return kPortTaken; }

  bool ended = false;
  std::vector<PixieConfig> starts;
  std::vector<PixieConfig> configured;
};

struct NoAddressTable : LocalAddresses {
  std::vector<LocalAddress> list() override { throw Error("GetIpAddrTable"); }
};

// Ticks while the operator is being told, as the window's timer does.
struct TickedOperator : FakeOperator {
  void tell(const char* caption, const std::string& text, Icon icon) override {
    FakeOperator::tell(caption, text, icon);
    if (tick) tick();
  }

  std::function<void()> tick;
};

class NetBootingTest : public testing::Test {
 protected:
  void failureIsTold() {
    netBooting.poll();
    EXPECT_THAT(person.said, ElementsAre("Error: " + bootFailureText(kPortTaken)));
    EXPECT_THAT(person.icons, ElementsAre(Operator::Icon::kError));
    person.said.clear();
    person.icons.clear();
  }

  CapturedTrace trace;
  BootServerSettings settings;
  PlayedBootService service;
  FakeLocalAddresses addresses = oneLocalAddress();
  TickedOperator person;
  NetBooting netBooting{settings, service, addresses, person};
};

}  // namespace

TEST_F(NetBootingTest, KeepsWhatIsEnteredAndHandsItToTheService) {
  netBooting.changeSettings({true, kNearby});
  EXPECT_TRUE(settings.enabled);
  EXPECT_EQ(kNearby, settings.clientAddress);
  netBooting.changeSettings({false, kFar});
  EXPECT_FALSE(settings.enabled);
  EXPECT_EQ(kFar, settings.clientAddress);
  EXPECT_THAT(service.configured,
              ElementsAre(PixieConfig{true, kNearby}, PixieConfig{false, kFar}));
  EXPECT_THAT(service.starts, IsEmpty());
  EXPECT_THAT(person.said, IsEmpty());
}

TEST_F(NetBootingTest, AnAddressThatNoPcCanUseIsWarnedOfAndHandedOver) {
  netBooting.changeSettings({true, kFar});
  EXPECT_THAT(person.said,
              ElementsAre("Warning: " + *clientAddressProblem(kFar, addresses) +
                          " Until \"Net booting\" is given another, PCs get this one."));
  EXPECT_THAT(person.icons, ElementsAre(Operator::Icon::kNone));
  EXPECT_EQ(kFar, settings.clientAddress);
  EXPECT_THAT(service.configured, ElementsAre(PixieConfig{true, kFar}));
}

TEST_F(NetBootingTest, AnAddressIsNotCheckedWhileTheServiceIsOff) {
  netBooting.changeSettings({false, kFar});
  EXPECT_THAT(person.said, IsEmpty());
}

TEST_F(NetBootingTest, AddressesThatCannotBeListedAreOnlyTraced) {
  NoAddressTable none;
  NetBooting other(settings, service, none, person);
  other.changeSettings({true, kNearby});
  EXPECT_THAT(service.configured, ElementsAre(PixieConfig{true, kNearby}));
  EXPECT_THAT(person.said, IsEmpty());
  EXPECT_THAT(trace.text(), HasSubstr("GetIpAddrTable"));
}

TEST_F(NetBootingTest, ARunningServiceIsNothingToTell) {
  settings.enabled = true;
  netBooting.poll();
  EXPECT_THAT(person.said, IsEmpty());
}

TEST_F(NetBootingTest, TheEndOfAnEnabledServiceIsToldOnce) {
  settings.enabled = true;
  service.ended = true;
  person.tick = [this] { netBooting.poll(); };
  failureIsTold();
  netBooting.poll();
  EXPECT_THAT(person.said, IsEmpty());
}

TEST_F(NetBootingTest, TheEndOfADisabledServiceIsNotTold) {
  service.ended = true;
  netBooting.poll();
  netBooting.changeSettings({false, kNearby});
  netBooting.poll();
  EXPECT_THAT(person.said, IsEmpty());
  EXPECT_THAT(service.starts, IsEmpty());
  EXPECT_THAT(service.configured, IsEmpty());
  EXPECT_EQ(kNearby, settings.clientAddress);
}

TEST_F(NetBootingTest, EnablingStartsAServiceThatHasEnded) {
  service.ended = true;
  netBooting.changeSettings({true, kNearby});
  EXPECT_THAT(service.starts, ElementsAre(PixieConfig{true, kNearby}));
  EXPECT_THAT(service.configured, IsEmpty());
  netBooting.poll();
  EXPECT_THAT(person.said, IsEmpty());
}

TEST_F(NetBootingTest, AServiceThatEndsAgainIsToldAgain) {
  settings.enabled = true;
  service.ended = true;
  failureIsTold();
  netBooting.changeSettings({true, kNearby});
  EXPECT_THAT(service.starts, ElementsAre(PixieConfig{true, kNearby}));
  service.ended = true;
  failureIsTold();
}

TEST_F(NetBootingTest, AServiceThatEndsBeforeItTakesTheSettingsIsTold) {
  netBooting.changeSettings({true, kNearby});
  service.ended = true;
  failureIsTold();
}

}  // namespace omniset::test
