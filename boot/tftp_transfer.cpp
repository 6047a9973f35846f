#include "boot/tftp_transfer.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/clock.h"
#include "core/error.h"
#include "core/shown_text.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr int kTriesForRequest = 20;
constexpr int kTriesInTransfer = 5;
constexpr std::size_t kReceiveLength = 256;
constexpr Micros kPatience = kSecond;
// How long a wait goes on without asking whether it is superseded.
constexpr Micros kGlance = 50 * kMillisecond;
// A random port may be taken.
constexpr int kPortTries = 8;

void traceClientError(const TftpError& error) {
  traceLine("TFTP error");
  const std::string_view text = tftpErrorText(error.code);
  traceLine((text.empty() ? "- " : std::string(text) + ": ") + shownText(error.message));
}

enum class Heard { kDatagram, kSilence, kSuperseded };

// False when nothing came within `patience`.
bool receiveOnce(TftpTransfer& transfer, Micros patience) {
  std::array<std::uint8_t, kReceiveLength> buffer;
  UdpPeer from;
  const auto length =
      transfer.socket().receiveWithin(patience, buffer, from, "select failed", "recvfrom failed");
  if (!length) return false;
  // News of an earlier datagram's fate is no sign of life.
  if (*length != 0 || from.port != 0) transfer.received(std::span(buffer).first(*length), from);
  return true;
}

Heard receiveWithGlances(TftpTransfer& transfer, const TftpServices& services) {
  const Micros end = services.clock->now() + kPatience;
  for (Micros left = kPatience; left > 0; left = end - services.clock->now()) {
    if (receiveOnce(transfer, std::min(left, kGlance))) return Heard::kDatagram;
    if (services.superseded()) return Heard::kSuperseded;
  }
  return Heard::kSilence;
}

bool mayBeSuperseded(const TftpTransfer& transfer, const TftpServices& services) {
  return transfer.state() == TftpTransfer::State::kAwaitingRequest && services.superseded;
}

Heard receive(TftpTransfer& transfer, const TftpServices& services) {
  if (mayBeSuperseded(transfer, services)) return receiveWithGlances(transfer, services);
  return receiveOnce(transfer, kPatience) ? Heard::kDatagram : Heard::kSilence;
}

}  // namespace

// The low byte, with its top bit set, is the port's high one.
std::uint16_t TransferPorts::next() {
  const int random = random_();
  auto port = static_cast<std::uint16_t>((random & 0xFF) << 8 | (random >> 8 & 0xFF) | 0x8000);
  if (port == last_) port ^= 1;
  return last_ = port;
}

TftpTransfer::TftpTransfer(UdpSocket& listening, BootImage image, std::uint32_t clientAddress,
                           const TftpServices& services)
    : listening_(listening),
      image_(image),
      services_(services),
      peer_{clientAddress, 0},
      tries_(kTriesForRequest) {
  traceLine("ENTERING TFTP LOOP");
}

void TftpTransfer::received(std::span<const std::uint8_t> datagram, const UdpPeer& from) {
  tries_ = kTriesInTransfer;
  if (state_ == State::kAwaitingRequest) {
    if (!acceptRequest(datagram, from)) traceLine("bad file trans request");
  } else if (checkAck(datagram)) {
    sendBlock();
  } else {
    traceLine("bad ack");
  }
}

void TftpTransfer::silence() {
  if (--tries_ == 0) {
    traceLine("TFTP timeout");
    end(State::kTimedOut);
  } else {
    send();
  }
}

bool TftpTransfer::acceptRequest(std::span<const std::uint8_t> datagram, const UdpPeer& from) {
  const auto request = readTftpRequest(datagram);
  if (!request) return false;
  state_ = State::kTransferring;
  openTransferSocket(from.port);
  if (request->sizeAsked) {
    traceLine("got tsize opt");
    sendOptionAck();
  } else {
    sendBlock();
  }
  if (services_.requested) services_.requested(request->fileName);
  return true;
}

void TftpTransfer::openTransferSocket(std::uint16_t peerPort) {
  peer_.port = peerPort;
  for (int tries = kPortTries;; --tries) {
    ownSocket_ = services_.makeSocket();
    ownSocket_->open("failed to create TFTP socket");
    try {
      ownSocket_->bind(services_.nextPort(), "bind failed");
      return;
    } catch (const SocketExc&) {
      if (tries == 1) throw;
    }
  }
}

void TftpTransfer::sendOptionAck() {
  packet_.makeOptionAcknowledgement(static_cast<std::uint32_t>(image_.length));
  send();
}

bool TftpTransfer::checkAck(std::span<const std::uint8_t> datagram) {
  if (const auto error = readTftpError(datagram)) {
    // The transfer goes on: only silence ends it.
    traceClientError(*error);
    return false;
  }
  const auto acknowledged = readTftpAcknowledgement(datagram);
  if (!acknowledged) return false;
  if (*acknowledged == static_cast<std::uint16_t>(block_)) return true;
  tracef("recv ack:%x, our:%x\n", *acknowledged, block_);
  return false;
}

void TftpTransfer::sendBlock() {
  const std::size_t length = std::min(image_.length - offset_, kTftpBlockLength);
  ++block_;
  packet_.makeData(static_cast<std::uint16_t>(block_), image_.bytes().subspan(offset_, length));
  offset_ += length;
  send();
  // Nobody waits for the last acknowledgement: the next request shows as well that all came.
  if (length < kTftpBlockLength) {
    traceLine("FILE SENT");
    end(State::kSent);
  }
}

void TftpTransfer::send() {
  if (peer_.port == 0) return;
  const auto datagram = packet_.datagram();
  try {
    if (socket().sendTo(datagram, peer_, "sendto failed") == datagram.size()) return;
  } catch (const SocketExc&) {
    // It is sent again after a second of silence.
  }
  traceLine("sendto failed");
}

void TftpTransfer::end(State state) {
  state_ = state;
  ownSocket_.reset();
}

bool serveImage(UdpSocket& listening, BootImage image, std::uint32_t clientAddress,
                const TftpServices& services) {
  using State = TftpTransfer::State;
  TftpTransfer transfer(listening, image, clientAddress, services);
  Micros nextGlance = 0;
  while (transfer.state() != State::kSent && transfer.state() != State::kTimedOut) {
    switch (receive(transfer, services)) {
      case Heard::kDatagram:
        // Datagrams that are no request may come faster than the glances, each of which takes time.
        if (mayBeSuperseded(transfer, services) && services.clock->now() >= nextGlance) {
          if (services.superseded()) return false;
          nextGlance = services.clock->now() + kGlance;
        }
        break;
      case Heard::kSilence:
        transfer.silence();
        break;
      case Heard::kSuperseded:
        return false;
    }
  }
  return transfer.state() == State::kSent;
}

}  // namespace omniset
