// Making and ending a session.
#include <filesystem>

#include "core/error.h"
#include "core/ipv4_address.h"
#include "tests/install/session_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using SessionStart = SessionFixture;
using SessionEnd = SessionFixture;

TEST_F(SessionStart, IsReadyToOfferAtOnce) {
  start();
  EXPECT_EQ(session->state(), State::kOffer);
  EXPECT_EQ(session->deadline(), now());
  EXPECT_EQ(state().status, RouterStatus::kInstalling);
  EXPECT_EQ(state().statusText, "Sending offer...");
  EXPECT_EQ(link.sentCount(), 0u);
}

TEST_F(SessionStart, KeepsTheRequestAndForgetsEarlierProgress) {
  record.packageFiles = {"a.bdl", "b.bdl"};
  record.status = RouterStatus::kFailed;
  record.statusText = "Installation failed: earlier";
  record.bytesSent = 99;
  start();
  EXPECT_EQ(state().mac, kTargetMac);
  EXPECT_EQ(state().label, "router");
  EXPECT_EQ(state().lastSeen, now());
  EXPECT_THAT(state().packageFiles, ElementsAre("a.bdl", "b.bdl"));
  EXPECT_EQ(state().bytesSent, 0);
  EXPECT_EQ(state().status, RouterStatus::kInstalling);
}

TEST_F(SessionStart, TracesTheScriptAndTheTemporaryFile) {
  const auto temporaryPath = temporary.path() + "/scr1";
  record.scriptPath = packages.write("own.scr", "x");
  const RouterSession made(record, packages.path(),
                           SessionServices{link.endpoint, sendFrame, link.clock, tempFiles});
  EXPECT_TRUE(trace.text().starts_with("script:" + record.scriptPath + "\ntempfile:"));
  EXPECT_TRUE(std::filesystem::exists(temporaryPath));
}

TEST_F(SessionStart, WritesTheScriptBeforeTheOffer) {
  record.address = ipv4(192, 168, 88, 1);
  record.netmaskLength = 24;
  start();
  ASSERT_THAT(temporary.names(), ElementsAre("scr1"));
  EXPECT_TRUE(readFile(temporary.path() + "/scr1").starts_with("\n:local eth\n"));
}

TEST_F(SessionStart, ScriptFailureMakesAFailedSessionThatSendsNothing) {
  record.useOwnScript = true;
  record.scriptPath = packages.path() + "/missing";
  start();
  expectFailed("Could not open script");
  EXPECT_THAT(temporary.names(), IsEmpty());
  fire();
  EXPECT_EQ(trace.text(), "finished\n");
  EXPECT_EQ(link.sentCount(), 0u);
}

TEST_F(SessionStart, ScriptFailureIsTracedAfterTheTemporaryFile) {
  record.useOwnScript = true;
  record.scriptPath = "/no/such/script";
  const RouterSession made(record, packages.path(),
                           SessionServices{link.endpoint, sendFrame, link.clock, tempFiles});
  EXPECT_TRUE(trace.text().starts_with("script:/no/such/script\ntempfile:")) << trace.text();
  EXPECT_TRUE(trace.text().ends_with("\nfail: Could not open script\n")) << trace.text();
}

TEST_F(SessionStart, FailedSessionTakesNoFrames) {
  record.useOwnScript = true;
  start();
  hear(target.says("YACK\n"));
  EXPECT_EQ(state().status, RouterStatus::kFailed);
  EXPECT_EQ(link.sentCount(), 0u);
}

class RefusingTempFiles : public TempFiles {
 public:
  std::string create(const char*) override { throw Error("GetTempFileName"); }
};

TEST_F(SessionStart, NoTemporaryFileToBeHadPassesTheErrorOn) {
  RefusingTempFiles refusing;
  EXPECT_THROW(RouterSession(record, packages.path(),
                             SessionServices{link.endpoint, sendFrame, link.clock, refusing}),
               Error);
}

TEST_F(SessionEnd, IsTracedAndDeletesTheScript) {
  start();
  session.reset();
  EXPECT_EQ(trace.text(), "~Installator()\n");
  EXPECT_THAT(temporary.names(), IsEmpty());
}

TEST_F(SessionEnd, DuringATransferLetsTheFilesGo) {
  packages.write("a.bdl", "12345");
  record.packageFiles = {"a.bdl"};
  startTo(State::kTransferring);
  fire();
  ASSERT_EQ(state().statusText, "Transfering: a.bdl");
  session.reset();
  EXPECT_THAT(temporary.names(), IsEmpty());
  EXPECT_TRUE(std::filesystem::remove(packages.path() + "/a.bdl"));
}

TEST_F(SessionEnd, WhileTheScriptItselfIsSentDeletesIt) {
  startTo(State::kTransferring);
  fire();
  ASSERT_EQ(state().statusText, "Transfering: configuration");
  session.reset();
  EXPECT_THAT(temporary.names(), IsEmpty());
}

}  // namespace
}  // namespace omniset::test
