// The TFTP server: hands one image in memory to one client. Which file the client asks for does not
// matter: it gets the image whose turn it is.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "boot/boot_images.h"
#include "boot/tftp_packet.h"
#include "core/clock.h"
#include "core/udp_socket.h"

namespace omniset {

// Draws the ports of transfers: random ones from 32768 on, never the same twice in succession. A
// client that still waits for an image's last block could not tell it from one of the next image.
class TransferPorts {
 public:
  explicit TransferPorts(std::function<int()> random) : random_(std::move(random)) {}
  std::uint16_t next();

 private:
  std::function<int()> random_;  // as rand()
  std::uint16_t last_ = 0;
};

// What a transfer needs besides its image.
struct TftpServices {
  std::function<std::unique_ptr<UdpSocket>()> makeSocket;  // not yet open
  std::function<std::uint16_t()> nextPort;                 // for the transfer
  // Told the file name of the accepted request, whatever bytes it has; may be empty.
  std::function<void(std::string_view fileName)> requested;
  // Asked several times a second while a request is awaited: true ends the transfer. May be empty;
  // needs the clock.
  std::function<bool()> superseded;
  const Clock* clock = nullptr;  // not owned
};

// One transfer, as a state machine: fed with datagrams and with seconds of silence, it sends the
// answers. Used by one thread.
class TftpTransfer {
 public:
  enum class State { kAwaitingRequest, kTransferring, kSent, kTimedOut };

  // The listening socket, the image and the services outlive the transfer. The client's address is
  // in network byte order: answers go there, wherever datagrams come from.
  TftpTransfer(UdpSocket& listening, BootImage image, std::uint32_t clientAddress,
               const TftpServices& services);

  State state() const { return state_; }
  // On which the next datagram is to be received.
  UdpSocket& socket() { return ownSocket_ ? *ownSocket_ : listening_; }

  // Raises SocketExc "failed to create TFTP socket" and "bind failed".
  void received(std::span<const std::uint8_t> datagram, const UdpPeer& from);
  // A second has passed without a datagram.
  void silence();

 private:
  bool acceptRequest(std::span<const std::uint8_t> datagram, const UdpPeer& from);
  void openTransferSocket(std::uint16_t peerPort);
  void sendOptionAck();
  bool checkAck(std::span<const std::uint8_t> datagram);
  void sendBlock();
  void send();
  void end(State state);

  UdpSocket& listening_;
  BootImage image_;
  const TftpServices& services_;
  std::unique_ptr<UdpSocket> ownSocket_;
  UdpPeer peer_;  // port 0 until there is a request
  State state_ = State::kAwaitingRequest;
  int tries_;
  std::uint32_t block_ = 0;  // the last one sent
  std::size_t offset_ = 0;   // of the next one
  TftpPacket packet_;        // the last one sent
};

// Waits for a read request on the listening socket, which stays open, and transfers the image to
// the client. True when its last block has been sent; false on a timeout, and when the transfer was
// superseded. Raises SocketExc "select failed", "recvfrom failed" and those of TftpTransfer.
bool serveImage(UdpSocket& listening, BootImage image, std::uint32_t clientAddress,
                const TftpServices& services);

}  // namespace omniset
