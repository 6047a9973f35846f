// Whole installations, and several at once.
#include <functional>
#include <random>

#include "core/ipv4_address.h"
#include "tests/install/installer_fixture.h"

namespace omniset::test {
namespace {

struct InstallerSessions : InstallerFixture {
  // Turns of the loop, with the targets answering, until `done` or for too long.
  void play(std::vector<InstallingTarget*> targets, const std::function<bool()>& done) {
    for (int turn = 0; turn < 20'000 && !done(); ++turn) {
      installer.step();
      for (; answered < network->sent.size(); ++answered) {
        for (InstallingTarget* target : targets) {
          if (const auto answer = target->answerTo(sent(answered))) deliver(*answer);
        }
      }
    }
    EXPECT_TRUE(done());
  }
  bool waitsForReboot(const MacAddress& mac) {
    return record(mac).status == RouterStatus::kWaitingReboot;
  }

  std::size_t answered = 0;
};

std::string contentOf(std::size_t length, unsigned seed) {
  std::mt19937 random(seed);
  std::string content(length, '\0');
  for (char& c : content) c = static_cast<char>(random());
  return content;
}

TEST_F(InstallerSessions, TargetEndsWithEveryFileAndIsRebooted) {
  const std::string system = contentOf(40'000, 1);
  const std::string routing = contentOf(2904, 2);
  packages.write("system.bdl", system);
  packages.write("routing.bdl", routing);
  InstallingTarget target(kTargetMac);
  install(kTargetMac, {"system.bdl", "routing.bdl"});
  play({&target}, [&] { return waitsForReboot(kTargetMac); });
  EXPECT_EQ(record(kTargetMac).bytesSent, 42'904);
  EXPECT_TRUE(installer.access().requestReboot(kTargetMac));
  play({&target}, [&] { return record(kTargetMac).status == RouterStatus::kFinished; });
  EXPECT_EQ(record(kTargetMac).statusText, "Installation finished successfully");
  EXPECT_TRUE(target.rebooted());
  EXPECT_EQ(target.files(),
            (std::map<std::string, std::string>{
                {"system.bdl", system}, {"routing.bdl", routing}, {"autorun.scr", ""}}));
}

TEST_F(InstallerSessions, TwoTargetsAtOnceKeepTheirOwnFilesAndNumbers) {
  const std::string one = contentOf(10'000, 3);
  const std::string two = contentOf(25'000, 4);
  packages.write("one.bdl", one);
  packages.write("two.bdl", two);
  InstallingTarget first(kTargetMac);
  InstallingTarget second(kSecondMac);
  install(kTargetMac, {"one.bdl"});
  install(kSecondMac, {"two.bdl", "one.bdl"});
  play({&first, &second}, [&] { return waitsForReboot(kTargetMac) && waitsForReboot(kSecondMac); });
  EXPECT_EQ(first.files(),
            (std::map<std::string, std::string>{{"one.bdl", one}, {"autorun.scr", ""}}));
  EXPECT_EQ(second.files(), (std::map<std::string, std::string>{
                                {"one.bdl", one}, {"two.bdl", two}, {"autorun.scr", ""}}));
}

TEST_F(InstallerSessions, FailureOfOneLeavesTheOther) {
  packages.write("one.bdl", "12345");
  InstallingTarget first(kTargetMac);
  InstallingTarget second(kSecondMac);
  install(kTargetMac, {"missing.bdl"});
  install(kSecondMac, {"one.bdl"});
  play({&first, &second}, [&] { return waitsForReboot(kSecondMac); });
  EXPECT_EQ(record(kTargetMac).status, RouterStatus::kFailed);
  EXPECT_EQ(second.files().at("one.bdl"), "12345");
}

TEST_F(InstallerSessions, HostileTargetCannotDisturbAnother) {
  packages.write("one.bdl", contentOf(20'000, 5));
  InstallingTarget honest(kSecondMac);
  install(kTargetMac, {"one.bdl"});
  install(kSecondMac, {"one.bdl"});
  std::mt19937 random(6);
  int sent = 0;
  play({&honest}, [&] {
    const int ack = static_cast<int>(random() % 4);
    const auto channel = static_cast<std::uint8_t>(random());
    deliver(makeFrame(kTargetMac, kInstallerMac, static_cast<int>(random() % 65536), ack,
                      contentOf(random() % 1500, static_cast<unsigned>(sent)), channel));
    ++sent;
    clock.advance(kMillisecond);
    return waitsForReboot(kSecondMac);
  });
  EXPECT_GT(sent, 10);
  EXPECT_EQ(honest.files().at("one.bdl"), contentOf(20'000, 5));
}

TEST_F(InstallerSessions, SilentTargetDoesNotDelayAnother) {
  packages.write("one.bdl", contentOf(20'000, 7));
  InstallingTarget answering(kSecondMac);
  install(kTargetMac, {"one.bdl"});
  install(kSecondMac, {"one.bdl"});
  const Micros began = clock.now();
  play({&answering}, [&] { return waitsForReboot(kSecondMac); });
  EXPECT_LT(clock.now() - began, 10 * kSecond);
  EXPECT_EQ(record(kTargetMac).statusText, "Sending offer...");
}

TEST_F(InstallerSessions, OfferThatKeepsTheConfigurationSendsAnEmptyScript) {
  RouterRecord wanted;
  wanted.mac = kTargetMac;
  wanted.keepConfiguration = true;
  wanted.address = ipv4(192, 168, 88, 1);
  wanted.netmaskLength = 24;
  wanted.lastSeen = clock.now();
  installer.access().install(wanted, packages.path());
  InstallingTarget target(kTargetMac);
  play({&target}, [&] { return waitsForReboot(kTargetMac); });
  EXPECT_EQ(sent(0).payloadText(), "OFFR\nkeep\n");
  EXPECT_EQ(target.files(), (std::map<std::string, std::string>{{"autorun.scr", ""}}));
}

}  // namespace
}  // namespace omniset::test
