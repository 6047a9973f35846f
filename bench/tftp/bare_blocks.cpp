#include "bench/tftp/bare_blocks.h"

#include <array>
#include <chrono>

#include "bench/tftp/datagram_socket.h"
#include "boot/tftp_packet.h"
#include "core/error.h"

namespace omniset::bench {

namespace {

constexpr std::size_t kAcknowledgementLength = 4;
using Block = std::array<std::uint8_t, kAcknowledgementLength + kTftpBlockLength>;
using Acknowledgement = std::array<std::uint8_t, kAcknowledgementLength>;

}  // namespace

void answerWithBlocks(std::uint16_t port) {
  DatagramSocket socket(port);
  const Block block{};
  Acknowledgement acknowledgement;
  std::uint16_t peer = 0;
  for (;;) {
    if (socket.receive(acknowledgement, peer)) socket.send(block, peer);
  }
}

double askForBlocks(std::uint16_t port, std::int64_t payloadBytes) {
  DatagramSocket socket;
  Block block;
  const Acknowledgement acknowledgement{};
  std::uint16_t peer = port;
  const auto started = std::chrono::steady_clock::now();
  for (std::int64_t carried = 0; carried < payloadBytes; carried += kTftpBlockLength) {
    socket.send(acknowledgement, peer);
    if (socket.receive(block, peer) != block.size()) throw Failure("A datagram did not come.");
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
  return taken.count();
}

}  // namespace omniset::bench
