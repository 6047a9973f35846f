// The job's body and its end.
#include <thread>

#include "core/error.h"
#include "core/thread.h"
#include "tests/install/installer_fixture.h"

namespace omniset::test {
namespace {

struct InstallerRun : InstallerFixture {
  std::string failureOfRun(const char* operation) {
    network->failing = operation;
    try {
      installer.run();
    } catch (const SocketExc& e) {
      return e.what();
    }
    return "none";
  }
};

TEST_F(InstallerRun, StopEventThatIsSetEndsItBeforeAnything) {
  install(kTargetMac);
  installer.stopEvent().set();
  installer.run();
  EXPECT_TRUE(network->waits.empty());
  EXPECT_TRUE(network->sent.empty());
}

// Sets an event in its third wait.
class StoppingSocket : public FakeUdpSocket {
 public:
  StoppingSocket(std::shared_ptr<FakeNetwork> network, Event*& event)
      : FakeUdpSocket(std::move(network)), event_(event) {}
  bool waitReadable(Micros timeout, const char* failure) override {
    if (++waits_ == 3) event_->set();
    return FakeUdpSocket::waitReadable(timeout, failure);
  }

 private:
  Event*& event_;
  int waits_ = 0;
};

TEST_F(InstallerRun, StopEventEndsItAfterTheTurnInProgress) {
  Event* stop = nullptr;
  const auto other = std::make_shared<FakeNetwork>();
  RouterInstaller stopped(
      0, InstallerServices{interfaces, std::make_unique<StoppingSocket>(other, stop), clock,
                           tempFiles});
  stop = &stopped.stopEvent();
  stopped.run();
  EXPECT_EQ(other->waits.size(), 3u);
}

TEST_F(InstallerRun, WaitFailureEndsItWithTheSocketException) {
  EXPECT_TRUE(failureOfRun("waitReadable").starts_with("select() failed: "));
}

TEST_F(InstallerRun, ReceiveFailureEndsItWithTheSocketException) {
  deliver(ScriptedTarget().announcement());
  EXPECT_TRUE(failureOfRun("receiveFrom").starts_with("recvfrom() failed: "));
}

TEST_F(InstallerRun, EndingReleasesTheSessions) {
  install(kTargetMac);
  failureOfRun("waitReadable");
  EXPECT_NO_THROW(installer.access(0));
}

// Waits a little in each wait, as a real socket does.
class SleepingSocket : public FakeUdpSocket {
 public:
  using FakeUdpSocket::FakeUdpSocket;
  bool waitReadable(Micros, const char*) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return false;
  }
};

TEST(InstallerThread, RunsAsAJobWhileAnotherThreadUsesTheSessions) {
  const SilentTrace silent;
  const auto network = std::make_shared<FakeNetwork>();
  FakeNetworkInterfaces interfaces({{"eth0", kInstallerMac}});
  const SystemClock clock;
  const TempFolder folder;
  FakeTempFiles tempFiles(folder);
  Thread<RouterInstaller, int> thread(
      "Router installer", 5000, 0,
      InstallerServices{interfaces, std::make_unique<SleepingSocket>(network), clock, tempFiles});
  thread.start();
  for (std::uint8_t i = 0; i < 100; ++i) {
    RouterRecord record;
    record.mac = {{0x02, 0, 0, 0, 1, i}};
    auto access = thread.job().access();
    access.install(record, folder.path());
    EXPECT_TRUE(access.requestReboot(record.mac));
    if (i % 2 == 0) {
      EXPECT_TRUE(access.cancel(record.mac));
    }
  }
  thread.stop();
  EXPECT_EQ(folder.names().size(), 50u);
}

}  // namespace
}  // namespace omniset::test
