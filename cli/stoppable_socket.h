// A socket whose owner can be told to stop.
#pragma once

#include <memory>
#include <utility>

#include "core/sync.h"
#include "core/udp_socket.h"

namespace omniset {

// Raised out of a wait: the work that waits is to end. No failure, so it is no exception of those.
struct StopRequested {};

// Passes everything on to `socket`, but raises StopRequested in place of a wait once the event is
// signalled. A wait that has begun goes on to its end.
class StoppableSocket : public UdpSocket {
 public:
  // The event outlives the socket.
  StoppableSocket(std::unique_ptr<UdpSocket> socket, Event& stopEvent)
      : socket_(std::move(socket)), stopEvent_(stopEvent) {}

  void open(const char* failure) override { socket_->open(failure); }
  void allowBroadcast(const char* failure) override { socket_->allowBroadcast(failure); }
  void allowAddressReuse(const char* failure) override { socket_->allowAddressReuse(failure); }
  void bind(std::uint16_t port, const char* failure) override { socket_->bind(port, failure); }
  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                     const char* failure) override {
    return socket_->sendTo(bytes, to, failure);
  }
  bool waitReadable(Micros timeout, const char* failure) override {
    if (stopEvent_.wait(0)) throw StopRequested();
    return socket_->waitReadable(timeout, failure);
  }
  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                          const char* failure) override {
    return socket_->receiveFrom(buffer, from, failure);
  }
  std::optional<std::size_t> receiveWithin(Micros timeout, std::span<std::uint8_t> buffer,
                                           UdpPeer& from, const char* waitFailure,
                                           const char* receiveFailure) override {
    if (stopEvent_.wait(0)) throw StopRequested();
    return socket_->receiveWithin(timeout, buffer, from, waitFailure, receiveFailure);
  }

 private:
  std::unique_ptr<UdpSocket> socket_;
  Event& stopEvent_;
};

}  // namespace omniset
