// A target on the fake network that takes everything it is sent, as far as a test lets it.
#pragma once

#include <string>

#include "link/link_connection.h"
#include "link/link_frame.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {

class PlayedTarget {
 public:
  // What the target still answers.
  enum class Obeys { kNothing, kOffer, kFiles, kReboot };

  PlayedTarget(FakeNetwork& network, const MacAddress& mac, std::string label);

  void announce();
  // A frame that the installer sent.
  void take(const FakeNetwork::Datagram& datagram);
  void pressKey();

  const MacAddress& mac() const { return connection_.local; }
  Obeys obeys = Obeys::kReboot;
  int filesTaken = 0;
  int offersTaken = 0;

 private:
  void answer(std::string_view text);
  void send(std::string_view payload, bool isAck, const MacAddress& to);

  FakeNetwork& network_;
  LinkConnection connection_;
  std::string label_;
};

}  // namespace omniset::test
