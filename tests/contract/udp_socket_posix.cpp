#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/contract/real_network.h"
#include "tests/contract/test_adapter.h"

namespace omniset::test {
namespace {

constexpr std::array<std::uint8_t, 3> kBytes{1, 2, 3};

// Takes all descriptors up to a number while it lives.
class TakenDescriptors {
 public:
  explicit TakenDescriptors(int last) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    before_ = limit;
    limit.rlim_cur = static_cast<rlim_t>(last) + 100;
    if (setrlimit(RLIMIT_NOFILE, &limit) < 0) return;
    do {
      taken_.push_back(open("/dev/null", O_RDONLY));
    } while (taken_.back() >= 0 && taken_.back() < last);
  }
  ~TakenDescriptors() {
    for (const int descriptor : taken_) close(descriptor);
    setrlimit(RLIMIT_NOFILE, &before_);
  }
  TakenDescriptors(const TakenDescriptors&) = delete;
  TakenDescriptors& operator=(const TakenDescriptors&) = delete;

  int last() const { return taken_.empty() ? -1 : taken_.back(); }

 private:
  rlimit before_{};
  std::vector<int> taken_;
};

TEST(PosixUdpSocket, TiedToAnInterfaceReceivesFromIt) {
  const BoundSocket bound = bindFreePort("lo");
  const BoundSocket sender = bindFreePort();
  sender.socket->sendTo(kBytes, {kLoopback, bound.port}, "sendto() failed");
  EXPECT_TRUE(bound.socket->waitReadable(10 * kSecond, "select() failed"));
}

TEST(PosixUdpSocket, TiedToAnInterfaceThatIsNotThereRaises) {
  const auto socket = makeUdpSocket("nosuchif0");
  EXPECT_EQ(raisedText<SocketExc>([&] { socket->open("socket() failed"); }),
            "setsockopt() SO_BINDTODEVICE failed: No such device\nError code: 19");
}

TEST(PosixUdpSocket, HearsOthersButNotItsOwnBroadcast) {
  const auto adapter = testAdapter();
  if (!adapter) GTEST_SKIP() << "needs a network with one adapter, OMNISET_TEST_ADAPTER=NAME=MAC";
  const BoundSocket bound = bindFreePort(adapter->name);
  const BoundSocket other = bindFreePort(adapter->name);
  for (const BoundSocket* sender : {&bound, &other}) {
    sender->socket->allowBroadcast("setsockopt() SO_BROADCAST failed");
    sender->socket->sendTo(kBytes, {kBroadcastAddress, bound.port}, "sendto() failed");
  }
  ASSERT_TRUE(bound.socket->waitReadable(10 * kSecond, "select() failed"));
  std::array<std::uint8_t, 100> buffer{};
  UdpPeer from;
  bound.socket->receiveFrom(buffer, from, "recvfrom() failed");
  EXPECT_EQ(from.port, other.port);
  EXPECT_FALSE(bound.socket->waitReadable(50 * kMillisecond, "select() failed"));
}

TEST(PosixUdpSocket, PortTakenIsNamedByTheSystem) {
  const BoundSocket first = bindFreePort();
  const auto second = makeUdpSocket();
  second->open("socket() failed");
  EXPECT_EQ(raisedText<SocketExc>([&] { second->bind(first.port, "bind() failed"); }),
            "bind() failed: Address already in use\nError code: 98");
}

TEST(PosixUdpSocket, WaitsOnADescriptorPastTheLimitOfSelect) {
  const TakenDescriptors taken(1100);
  ASSERT_GE(taken.last(), 1100) << "the limit of open files is too low for this test";
  const BoundSocket bound = bindFreePort();
  EXPECT_FALSE(bound.socket->waitReadable(kMillisecond, "select() failed"));
  bound.socket->sendTo(kBytes, {kLoopback, bound.port}, "sendto() failed");
  EXPECT_TRUE(bound.socket->waitReadable(10 * kSecond, "select() failed"));
}

TEST(PosixUdpSocket, ASignalEndsAWaitWithoutLimitEarly) {
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = [](int) {};
  sigaction(SIGUSR1, &action, &before);
  const BoundSocket bound = bindFreePort();
  std::atomic<bool> over = false;
  bool readable = true;
  std::thread waiter([&] {
    readable = bound.socket->waitReadable(0, "select() failed");
    over = true;
  });
  // A signal that comes before the wait ends nothing: so once more until it is over.
  while (!over) {
    pthread_kill(waiter.native_handle(), SIGUSR1);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  waiter.join();
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_FALSE(readable);
}

}  // namespace
}  // namespace omniset::test
