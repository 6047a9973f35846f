#include "fake_udp_socket.h"

#include <algorithm>

#include "core/error.h"
#include "core/ipv4_address.h"

namespace omniset::test {

void FakeNetwork::deliver(std::span<const std::uint8_t> bytes, std::uint16_t fromPort) {
  toReceive.push_back({{bytes.begin(), bytes.end()}, {ipv4(192, 168, 88, 7), fromPort}});
}

void FakeUdpSocket::failIf(const std::string& operation, const char* failure) const {
  if (network_->failing == operation) throw SocketExc(failure);
}

void FakeUdpSocket::open(const char* failure) {
  network_->calls.push_back("open");
  failIf("open", failure);
}

void FakeUdpSocket::allowBroadcast(const char* failure) {
  network_->calls.push_back("allowBroadcast");
  failIf("allowBroadcast", failure);
}

void FakeUdpSocket::allowAddressReuse(const char* failure) {
  network_->calls.push_back("allowAddressReuse");
  failIf("allowAddressReuse", failure);
}

void FakeUdpSocket::bind(std::uint16_t port, const char* failure) {
  network_->calls.push_back("bind " + std::to_string(port));
  failIf("bind", failure);
}

std::size_t FakeUdpSocket::sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                                  const char* failure) {
  failIf("sendTo", failure);
  network_->sent.push_back({{bytes.begin(), bytes.end()}, to});
  return std::min(bytes.size(), network_->mostSent);
}

bool FakeUdpSocket::waitReadable(Micros timeout, const char* failure) {
  failIf("waitReadable", failure);
  network_->waits.push_back(timeout);
  if (!network_->toReceive.empty()) return true;
  if (network_->clock) network_->clock->advance(timeout);
  return false;
}

std::size_t FakeUdpSocket::receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                                       const char* failure) {
  failIf("receiveFrom", failure);
  const FakeNetwork::Datagram datagram = network_->toReceive.front();
  network_->toReceive.pop_front();
  const std::size_t length = std::min(buffer.size(), datagram.bytes.size());
  std::copy_n(datagram.bytes.begin(), length, buffer.begin());
  from = datagram.peer;
  return length;
}

}  // namespace omniset::test
