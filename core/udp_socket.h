// One UDP socket. Each operation raises SocketExc with the text that its caller gives, so that the
// services keep their own words. Addresses are in network byte order, ports in host byte order.
// One thread at a time uses a socket.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "core/clock.h"

namespace omniset {

struct UdpPeer {
  std::uint32_t address = 0;
  std::uint16_t port = 0;
};

class UdpSocket {
 public:
  virtual ~UdpSocket() = default;

  virtual void open(const char* failure) = 0;
  virtual void allowBroadcast(const char* failure) = 0;
  // Another socket that allows it too may be bound to the same port.
  virtual void allowAddressReuse(const char* failure) = 0;
  // Binds to any local address. What this socket itself broadcasts may come back to it from then
  // on; some systems keep it away.
  virtual void bind(std::uint16_t port, const char* failure) = 0;
  // Returns the number of bytes sent.
  virtual std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                             const char* failure) = 0;
  // Waits at most `timeout`, 0 without limit; false when nothing came in time, or when a signal
  // ended the wait early.
  virtual bool waitReadable(Micros timeout, const char* failure) = 0;
  // Receives one datagram, cut to the buffer's size; returns its length. Does not wait: nothing,
  // like a report of an earlier datagram's fate, counts as a datagram of no bytes, but leaves
  // `from` as it was.
  virtual std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                                  const char* failure) = 0;
  // Waits for a datagram and receives it: waitReadable and receiveFrom in one, with fewer calls of
  // the system where it has a receive that ends in time. Nothing when waitReadable would be false.
  virtual std::optional<std::size_t> receiveWithin(Micros timeout, std::span<std::uint8_t> buffer,
                                                   UdpPeer& from, const char* waitFailure,
                                                   const char* receiveFailure) {
    if (!waitReadable(timeout, waitFailure)) return std::nullopt;
    return receiveFrom(buffer, from, receiveFailure);
  }
};

// A socket of the system, not yet open. A non-empty interface name ties it to that network
// interface on POSIX, where broadcasts need one ("setsockopt() SO_BINDTODEVICE failed"); on Windows
// the system chooses the interface.
std::unique_ptr<UdpSocket> makeUdpSocket(const std::string& interfaceName = {});

// Starts the system's socket library, and cleans up after it. Raises Error "WSA start failed".
class SocketLibrary {
 public:
  SocketLibrary();
  ~SocketLibrary();
  SocketLibrary(const SocketLibrary&) = delete;
  SocketLibrary& operator=(const SocketLibrary&) = delete;
};

}  // namespace omniset
