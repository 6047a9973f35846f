// What the tests of the install link share: addresses, frames made in one expression, and an
// endpoint over a socket without a network.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/os_error.h"
#include "link/broadcast_endpoint.h"
#include "link/link_connection.h"
#include "link/link_frame.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/fake_udp_socket.h"

namespace omniset::test {

inline constexpr MacAddress kInstallerMac{{0x02, 0x00, 0x00, 0x00, 0x00, 0x01}};
inline constexpr MacAddress kTargetMac{{0x02, 0x00, 0x00, 0x01, 0x02, 0x03}};
inline constexpr MacAddress kStrangerMac{{0x02, 0x00, 0x00, 0x0A, 0x0B, 0x0C}};
inline constexpr MacAddress kNobody{};

// Whether and what a frame acknowledges.
constexpr int kNoAck = -1;

// A frame from one address to another; `ack` kNoAck leaves is-ack clear.
inline LinkFrame makeFrame(const MacAddress& from, const MacAddress& to, int sequence, int ack,
                           std::string_view payload = {}, std::uint8_t channel = kControlChannel) {
  LinkFrame frame;
  FrameHeader header;
  header.source = from;
  header.destination = to;
  header.isAck = ack != kNoAck;
  header.channel = channel;
  header.payloadLength = static_cast<std::uint16_t>(payload.size());
  header.sequence = static_cast<std::uint16_t>(sequence);
  header.acknowledgement = static_cast<std::uint16_t>(header.isAck ? ack : 0);
  frame.setHeader(header);
  std::copy(payload.begin(), payload.end(), frame.payloadRoom().begin());
  return frame;
}

inline LinkFrame frameFrom(const std::vector<std::uint8_t>& datagram) {
  LinkFrame frame;
  std::copy_n(datagram.begin(), std::min(datagram.size(), frame.bytes.size()), frame.bytes.begin());
  return frame;
}

// The text of an Error made now, after a call that failed with that code.
inline std::string errorText(const std::string& call, long code) {
  return call + ": " + osErrorText(code) + "Error code: " + std::to_string(code);
}

// A connection bound to the target, with the numbers given.
inline LinkConnection boundConnection(int sequence, int acknowledgement) {
  LinkConnection connection;
  connection.local = kInstallerMac;
  connection.peer = kTargetMac;
  connection.sequence = static_cast<std::uint16_t>(sequence);
  connection.acknowledgement = static_cast<std::uint16_t>(acknowledgement);
  return connection;
}

// The installer's endpoint; waits that find nothing move the clock.
struct LinkFixture {
  LinkFixture() { network->clock = &clock; }

  void deliver(const LinkFrame& frame) { network->deliver(frame.datagram()); }
  LinkFrame sent(std::size_t index) const { return frameFrom(network->sent.at(index).bytes); }
  std::size_t sentCount() const { return network->sent.size(); }

  FakeClock clock;
  std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
  BroadcastEndpoint endpoint{kInstallerMac, nullptr, kInstallPort,
                             std::make_unique<FakeUdpSocket>(network)};
};

}  // namespace omniset::test
