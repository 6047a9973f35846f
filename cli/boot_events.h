// Makes events of what the boot service tells, and says for it who may boot.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "boot/pixie.h"
#include "cli/boot_event.h"
#include "core/locked_queue.h"

namespace omniset {

// Why this client is not to boot, as a sentence's end; empty when it may. Called in the boot
// service's thread.
using BootRefusal = std::function<std::string(const MacAddress& client)>;

inline std::string everybodyBoots(const MacAddress& /*client*/) {
  return {};
}

class BootEvents : public BootWatcher {
 public:
  // Every client gets `clientAddress` (network byte order).
  BootEvents(std::uint32_t clientAddress, BootRefusal refusal)
      : clientAddress_(clientAddress), refusal_(std::move(refusal)) {}

  // The oldest event that was not taken yet. For any thread.
  std::optional<BootEvent> take() { return events_.pop(); }

  bool mayBoot(const MacAddress& client) override;
  void answered(const MacAddress& client) override;
  void imageRequested(int number, std::string_view fileName) override;
  void imageSent(int number, std::size_t length) override;
  void gaveUp(int number, bool requested) override;
  void allSent() override;

 private:
  void tell(BootEvent event);

  const std::uint32_t clientAddress_;
  const BootRefusal refusal_;
  LockedQueue<BootEvent> events_;

  // The rest is the service's thread's.
  MacAddress client_;            // that was answered last
  bool isFetchAwaited_ = false;  // it was answered and has fetched nothing since
  std::set<MacAddress> refused_;
};

}  // namespace omniset
