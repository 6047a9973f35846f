// What other threads do with the sessions.
#include <future>
#include <stdexcept>

#include "core/error.h"
#include "tests/install/installer_fixture.h"

namespace omniset::test {
namespace {

using InstallerAccess = InstallerFixture;

TEST_F(InstallerAccess, TargetWithoutASessionHasNothing) {
  auto access = installer.access();
  EXPECT_EQ(access.record(kTargetMac), nullptr);
  EXPECT_FALSE(access.requestReboot(kTargetMac));
  EXPECT_FALSE(access.cancel(kTargetMac));
  EXPECT_FALSE(access.takeAnnouncement());
}

TEST_F(InstallerAccess, InstalledTargetIsOfferedAtTheNextTurn) {
  install(kTargetMac);
  EXPECT_EQ(record(kTargetMac).statusText, "Sending offer...");
  EXPECT_TRUE(network->sent.empty());
  idle(1);
  ASSERT_EQ(network->sent.size(), 1u);
  EXPECT_EQ(sent(0).payloadText(), "OFFR\n");
}

TEST_F(InstallerAccess, CancelEndsTheSessionAndItsTimer) {
  install(kTargetMac);
  idle(1);
  trace.clear();
  EXPECT_TRUE(installer.access().cancel(kTargetMac));
  EXPECT_EQ(trace.text(), "~Installator()\n");
  EXPECT_TRUE(temporary.names().empty());
  EXPECT_FALSE(hasSession(kTargetMac));
  idle(3);
  EXPECT_EQ(network->sent.size(), 1u);
}

TEST_F(InstallerAccess, CancelledTargetIsFreeForANewOffer) {
  install(kTargetMac);
  idle(1);
  ScriptedTarget first;
  first.hears(sent(0));
  hear(first.says("YACK\n"));
  installer.access().cancel(kTargetMac);
  install(kTargetMac);
  idle(1);
  const LinkFrame offer = sent(network->sent.size() - 1);
  EXPECT_EQ(offer.payloadText(), "OFFR\n");
  EXPECT_EQ(offer.header().sequence, 1);
  ScriptedTarget again;
  again.hears(offer);
  hear(again.says("YACK\n"));
  EXPECT_EQ(record(kTargetMac).statusText, "Partitioning and formating harddrive...");
}

TEST_F(InstallerAccess, FramesAfterACancelAreIgnored) {
  install(kTargetMac);
  idle(1);
  installer.access().cancel(kTargetMac);
  trace.clear();
  hear(makeFrame(kTargetMac, kInstallerMac, 2, 1, "YACK\n"));
  EXPECT_EQ(trace.text(), "");
}

TEST_F(InstallerAccess, NewInstallationReplacesTheEarlierOne) {
  install(kTargetMac);
  idle(2);
  install(kTargetMac);
  EXPECT_EQ(temporary.names().size(), 1u);
  const std::size_t count = network->sent.size();
  idle(1);
  EXPECT_EQ(network->sent.size(), count + 1);
}

TEST_F(InstallerAccess, RecordOfASessionCanBeInstalledAgain) {
  packages.write("a.bdl", "x");
  install(kTargetMac, {"a.bdl"});
  auto access = installer.access();
  access.install(*access.record(kTargetMac), packages.path());
  const RouterRecord* again = access.record(kTargetMac);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->mac, kTargetMac);
  EXPECT_EQ(again->packageFiles, std::vector<std::string>{"a.bdl"});
  EXPECT_EQ(again->status, RouterStatus::kInstalling);
}

class RefusingTempFiles : public TempFiles {
 public:
  std::string create(const char* prefix) override {
    if (refuse) throw Error("GetTempFileName");
    return inner.create(prefix);
  }

  explicit RefusingTempFiles(const TempFolder& folder) : inner(folder) {}
  FakeTempFiles inner;
  bool refuse = true;
};

TEST_F(InstallerAccess, InstallationWithoutATemporaryFileRaisesAndMakesNoSession) {
  RefusingTempFiles refusing(temporary);
  RouterInstaller other(
      0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network), clock, refusing});
  RouterRecord wanted;
  wanted.mac = kTargetMac;
  EXPECT_THROW(other.access().install(wanted, packages.path()), Error);
  EXPECT_EQ(other.access(0).record(kTargetMac), nullptr);
}

TEST_F(InstallerAccess, FailedReplacementLeavesTheEarlierSession) {
  RefusingTempFiles refusing(temporary);
  RouterInstaller other(
      0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network), clock, refusing});
  RouterRecord wanted;
  wanted.mac = kTargetMac;
  refusing.refuse = false;
  other.access().install(wanted, packages.path());
  refusing.refuse = true;
  EXPECT_THROW(other.access().install(wanted, packages.path()), Error);
  EXPECT_NE(other.access().record(kTargetMac), nullptr);
}

TEST_F(InstallerAccess, FailedScriptShowsInTheRecord) {
  RouterRecord wanted;
  wanted.mac = kTargetMac;
  wanted.useOwnScript = true;
  installer.access().install(wanted, packages.path());
  EXPECT_EQ(record(kTargetMac).statusText, "Installation failed: Could not open script");
  EXPECT_EQ(record(kTargetMac).status, RouterStatus::kFailed);
}

TEST_F(InstallerAccess, OtherThreadsWaitForTheSessionsOnlyAsLongAsTheySay) {
  const auto held = installer.access();
  auto other = std::async(std::launch::async, [&] {
    try {
      const auto access = installer.access(20);
      return std::string("had access");
    } catch (const std::runtime_error& e) {
      return std::string(e.what());
    }
  });
  EXPECT_EQ(other.get(), "Mutex wait timeouted");
}

TEST_F(InstallerAccess, EndOfTheInstallerDeletesAllScripts) {
  {
    RouterInstaller other(0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network),
                                               clock, tempFiles});
    RouterRecord wanted;
    wanted.mac = kTargetMac;
    other.access().install(wanted, packages.path());
    wanted.mac = kSecondMac;
    other.access().install(wanted, packages.path());
    EXPECT_EQ(temporary.names().size(), 2u);
  }
  EXPECT_TRUE(temporary.names().empty());
}

}  // namespace
}  // namespace omniset::test
