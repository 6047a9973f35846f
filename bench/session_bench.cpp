// What the event loop itself costs with many sessions: nothing here may grow with their number but
// by its logarithm and what the processor's caches take.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "link/timed_sessions.h"

namespace omniset {
namespace {

constexpr Micros kRetransmission = 10 * kMillisecond;

// A session reduced to its deadline.
class Timer {
 public:
  explicit Timer(Micros deadline) : deadline_(deadline) {}
  Micros deadline() const { return deadline_; }
  void timerFired(Micros now) { deadline_ = now + kRetransmission; }
  void frameReceived(Micros now) { deadline_ = now + kRetransmission; }

 private:
  Micros deadline_;
};

struct Sessions {
  explicit Sessions(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
      // Spread over all six bytes, so that neighbours in the order of the frames are not neighbours
      // in the order of the addresses.
      MacAddress mac;
      std::uint64_t value = static_cast<std::uint64_t>(i + 1) * 0x9E37'79B9'7F4A'7C15;
      for (std::uint8_t& byte : mac.bytes) {
        byte = static_cast<std::uint8_t>(value >> 56);
        value <<= 8;
      }
      macs.push_back(mac);
      sessions.add(mac, std::make_unique<Timer>(kRetransmission + i));
    }
  }

  const MacAddress& next() {
    if (++last == macs.size()) last = 0;
    return macs[last];
  }

  std::vector<MacAddress> macs;
  std::size_t last = 0;
  TimedSessions<Timer> sessions;
};

void FindSession(benchmark::State& state) {
  Sessions all(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(all.sessions.find(all.next()));
}
BENCHMARK(FindSession)->Arg(1)->Arg(16)->Arg(256)->Arg(4096);

void NextDeadline(benchmark::State& state) {
  const Sessions all(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(all.sessions.timeToNext(0, kSecond));
}
BENCHMARK(NextDeadline)->Arg(1)->Arg(16)->Arg(256)->Arg(4096);

// A whole turn: timers, the time to wait, and a frame that moves its session's deadline.
void LoopTurn(benchmark::State& state) {
  Sessions all(state.range(0));
  Micros now = 0;
  for (auto _ : state) {
    ++now;
    all.sessions.fireDue(now);
    benchmark::DoNotOptimize(all.sessions.timeToNext(now, kSecond));
    all.sessions.with(all.next(), [now](Timer& timer) { timer.frameReceived(now); });
  }
}
BENCHMARK(LoopTurn)->Arg(1)->Arg(16)->Arg(256)->Arg(4096);

}  // namespace
}  // namespace omniset
