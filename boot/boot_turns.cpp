#include "boot/boot_turns.h"

#include <algorithm>

namespace omniset {

BootTurns::Requests::const_iterator BootTurns::find(const MacAddress& client) const {
  return std::find_if(requests_.begin(), requests_.end(),
                      [&](const BootpPacket& request) { return clientMac(request) == client; });
}

bool BootTurns::has(const MacAddress& client) const {
  return find(client) != requests_.end();
}

void BootTurns::add(const BootpPacket& request) {
  const auto earlier = find(clientMac(request));
  if (earlier != requests_.end()) {
    requests_[static_cast<std::size_t>(earlier - requests_.begin())] = request;
  } else if (requests_.size() < kMostClients) {
    requests_.push_back(request);
  }
}

BootTurns::Requests::const_iterator BootTurns::choose(Micros now) const {
  if (!present_) return requests_.begin();
  const auto again = find(present_->client);
  if (again == requests_.end()) return requests_.begin();
  if (now - present_->since < kPatience || requests_.size() == 1) return again;
  return again == requests_.begin() ? again + 1 : requests_.begin();
}

std::optional<BootpPacket> BootTurns::take(Micros now) {
  if (requests_.empty()) return std::nullopt;
  const auto chosen = choose(now);
  const BootpPacket request = *chosen;
  requests_.erase(chosen);
  const MacAddress client = clientMac(request);
  if (!present_ || present_->client != client) present_ = Turn{client, now};
  return request;
}

}  // namespace omniset
