// The boot requests that wait for their turn: the latest of each client, in the order in which the
// clients first asked. Used by the boot service's thread.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>

#include "boot/bootp_packet.h"
#include "core/clock.h"
#include "core/mac_address.h"

namespace omniset {

class BootTurns {
 public:
  // Requests of more clients are forgotten: they ask again.
  static constexpr std::size_t kMostClients = 64;
  // How long a client that asks again and again without fetching anything goes before the others.
  static constexpr Micros kPatience = 20 * kSecond;

  void add(const BootpPacket& request);
  bool has(const MacAddress& client) const;
  bool empty() const { return requests_.empty(); }
  void clear() { requests_.clear(); }

  // Takes the request to be answered next: that of the client whose turn it is, if it asks again
  // within its time or alone; else the first.
  std::optional<BootpPacket> take(Micros now);
  // The client whose turn it is fetches what it was offered: its next request is a new boot.
  void endTurn() { present_.reset(); }

 private:
  struct Turn {
    MacAddress client;
    Micros since = 0;
  };
  using Requests = std::deque<BootpPacket>;

  Requests::const_iterator find(const MacAddress& client) const;
  Requests::const_iterator choose(Micros now) const;

  Requests requests_;
  std::optional<Turn> present_;
};

}  // namespace omniset
