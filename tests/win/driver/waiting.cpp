#include "tests/win/driver/waiting.h"

#include <thread>

namespace omniset::test {

namespace {
constexpr Milliseconds kPause{10};
}

void waitUntil(const std::string& what, const std::function<bool()>& condition,
               const std::function<std::string()>& seen, Milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) {
      const std::string after = std::to_string(limit.count()) + " ms";
      throw WindowFault("waited " + after + " in vain for: " + what +
                        (seen ? "; seen instead: " + seen() : std::string()));
    }
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace omniset::test
