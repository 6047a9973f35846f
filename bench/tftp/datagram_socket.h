// A plain UDP socket on the loopback interface that waits in its calls, for what is measured beside
// the boot service.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace omniset::bench {

class DatagramSocket {
 public:
  // Bound to the port, 0 for any. Raises SocketExc.
  explicit DatagramSocket(std::uint16_t port = 0);
  ~DatagramSocket();
  DatagramSocket(const DatagramSocket&) = delete;
  DatagramSocket& operator=(const DatagramSocket&) = delete;

  void send(std::span<const std::uint8_t> datagram, std::uint16_t toPort);

  // The length of the datagram; nothing when none came within a second. Sets the port of its
  // sender.
  std::optional<std::size_t> receive(std::span<std::uint8_t> buffer, std::uint16_t& fromPort);

 private:
  int socket_;
};

}  // namespace omniset::bench
