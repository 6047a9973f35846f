// A PC that asks for its address and an image as its boot firmware does, from this computer's own
// network.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/win/driver/udp_port.h"

namespace omniset::test {

class AskingPc {
 public:
  // Asks once; nothing when no reply to it comes in time.
  std::optional<std::vector<std::uint8_t>> ask(Milliseconds limit);
  // Asks until there is a reply; raises WindowFault when there is none.
  std::vector<std::uint8_t> askUntilAnswered();
  // Asks until there is no reply any more; raises WindowFault when they go on.
  void askUntilUnanswered();

  // Asks for an image until something comes, which is the datagram that is returned. Needs this
  // computer's own address as the client's.
  std::vector<std::uint8_t> askForImage();

  // The request for an address that was sent last.
  const std::vector<std::uint8_t>& request() const { return request_; }

 private:
  UdpPort port_{68};
  std::vector<std::uint8_t> request_;
  std::uint8_t number_ = 0;
};

// Four bytes of a packet as an address is written.
std::string addressAt(const std::vector<std::uint8_t>& packet, std::size_t offset);

}  // namespace omniset::test
