// A PC that boots over the network: asks for an address as boot firmware does, then fetches its
// files one after the other, and starts over when that fails.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "boot_network.h"
#include "core/mac_address.h"

namespace omniset::test {

class BootClient {
 public:
  using Bytes = std::vector<std::uint8_t>;

  struct Plan {
    MacAddress mac;
    Bytes request;                   // the BOOTP request
    int asks = 3;                    // that must be answered, a second apart
    std::vector<std::string> files;  // their names
    std::string options;             // of the read requests
    int lives = 1;                   // how often it may boot
    std::uint16_t firstPort = 2070;  // a range of its own
  };

  // The network outlives the client.
  BootClient(BootNetwork& network, Plan plan);
  ~BootClient();
  BootClient(const BootClient&) = delete;
  BootClient& operator=(const BootClient&) = delete;

  // Power on.
  void start();

  // The files of the present boot, as far as they have come whole.
  const std::vector<Bytes>& files() const { return files_; }
  bool isDone() const { return files_.size() == plan_.files.size(); }
  bool hasGivenUp() const { return livesLeft_ == 0; }
  // Every file that came whole, in all its boots.
  const std::vector<Bytes>& everything() const { return everything_; }
  // The longest that the first answer to a read request took.
  Micros slowestFirstAnswer() const { return slowestFirstAnswer_; }

 private:
  void boot();
  void ask();
  void replied(const Bytes& datagram);
  void fetch();
  void sendRequest();
  void received(const Bytes& datagram, std::uint16_t fromPort);
  void receivedData(const Bytes& datagram);
  void fileCame();
  void acknowledge();
  void fail();
  // Calls back after the delay, unless something else has happened until then.
  void later(Micros delay, void (BootClient::*action)());
  void askAgain();
  void requestAgain();
  void acknowledgeAgain();

  BootNetwork& network_;
  Plan plan_;
  int livesLeft_;
  std::uint64_t turn_ = 0;  // counts what has happened, to know the timers of earlier turns
  int tries_ = 0;
  int asked_ = 0;
  bool asking_ = false;
  std::uint16_t port_ = 0;
  std::uint16_t serverPort_ = 0;
  std::uint16_t block_ = 0;
  Micros requestedAt_ = 0;
  Micros slowestFirstAnswer_ = 0;
  Bytes file_;
  std::vector<Bytes> files_;
  std::vector<Bytes> everything_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace omniset::test
