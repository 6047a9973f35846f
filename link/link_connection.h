// What one side of the install link knows about one peer.
#pragma once

#include <cstdint>

#include "core/mac_address.h"

namespace omniset {

struct LinkConnection {
  std::uint16_t sequence = 1;         // stamped on the next frame sent; raised once acknowledged
  std::uint16_t acknowledgement = 0;  // sequence of the last payload-bearing frame accepted
  MacAddress local;                   // source of every frame sent
  MacAddress peer;                    // destination of every frame sent; the wildcard while unbound
  MacAddress wildcard;                // always all zeros

  void reset() { *this = LinkConnection{}; }
  bool isBound() const { return peer != wildcard; }
};

}  // namespace omniset
