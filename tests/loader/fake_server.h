// The server of a network boot and the wire to it, in simulated time. The transfers are those that
// boot/ serves; the wire may lose, repeat, delay and replace what is sent.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "boot/tftp_transfer.h"
#include "tests/fakes/captured_trace.h"

namespace omniset::loader::test {

using Bytes = std::vector<std::uint8_t>;

struct Datagram {
  std::uint16_t from = 0;  // ports
  std::uint16_t to = 0;
  Bytes bytes;
};

struct Arrival {
  Micros delay = 0;
  Datagram datagram;
};
using Arrivals = std::vector<Arrival>;

class FakeServer {
 public:
  FakeServer();
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;

  // Begins anew, with nothing on its way: the requests get these, one after the other.
  void serve(std::vector<Bytes> images);

  // What arrives because of a datagram that either sends, at the PC or the server by its port;
  // empty: itself, at once.
  std::function<Arrivals(const Datagram&)> wire;

  struct Sent {
    std::uint16_t ticks;
    Datagram datagram;
  };
  std::vector<Sent> sentByPc;          // whatever became of it
  std::vector<std::string> requested;  // the names that the server has heard

  // The PC's side. A look in vain takes time.
  void send(Datagram datagram);
  std::optional<Datagram> receive(std::uint16_t port);
  std::uint16_t ticks() const;

 private:
  class Socket;

  void carry(Datagram datagram);
  void arrive(Arrival arrival);
  void runUntil(Micros end);
  void hear(const Datagram& datagram);
  void feed(const Datagram& datagram);
  void startTransfer();
  void goOn();

  static constexpr Micros kNever = std::numeric_limits<Micros>::max();

  omniset::test::SilentTrace silent_;
  Micros now_ = 0;
  // By the time of their arrival.
  std::multimap<Micros, Datagram> toServer_;
  std::multimap<Micros, Datagram> toPc_;

  TftpServices services_;
  std::unique_ptr<UdpSocket> listening_;
  std::vector<Bytes> images_;
  std::size_t served_ = 0;                  // the image of the transfer
  std::unique_ptr<TftpTransfer> transfer_;  // none: nothing is served any more
  std::uint16_t port_ = 0;                  // of the transfer
  Micros silenceAt_ = kNever;
  std::deque<Datagram> requests_;  // for the next transfer
};

}  // namespace omniset::loader::test
