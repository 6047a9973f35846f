#include "cli/boot_events.h"

#include <utility>

namespace omniset {

namespace {
// More than a segment has; it bounds what a flood of invented clients can use up.
constexpr std::size_t kMostRefused = 4096;
}  // namespace

void BootEvents::tell(BootEvent event) {
  event.client = client_;
  events_.push(std::move(event));
}

// Told once: boot firmware asks several times, and some never stops.
bool BootEvents::mayBoot(const MacAddress& client) {
  const std::string reason = refusal_(client);
  if (reason.empty()) return true;
  if (refused_.size() < kMostRefused && refused_.insert(client).second) {
    events_.push({.kind = BootEvent::Kind::kRefused, .client = client, .text = reason});
  }
  return false;
}

void BootEvents::answered(const MacAddress& client) {
  const bool isRepetition = isFetchAwaited_ && client == client_;
  client_ = client;
  isFetchAwaited_ = true;
  if (!isRepetition) tell({.kind = BootEvent::Kind::kAnswered, .address = clientAddress_});
}

void BootEvents::imageRequested(int number, std::string_view fileName) {
  isFetchAwaited_ = false;
  tell({.kind = BootEvent::Kind::kRequested, .image = number, .text = std::string(fileName)});
}

void BootEvents::imageSent(int number, std::size_t length) {
  tell({.kind = BootEvent::Kind::kSent, .image = number, .length = length});
}

void BootEvents::gaveUp(int number, bool requested) {
  isFetchAwaited_ = false;
  tell({.kind = BootEvent::Kind::kGaveUp, .image = number, .requested = requested});
}

void BootEvents::allSent() {
  tell({.kind = BootEvent::Kind::kDone});
}

}  // namespace omniset
