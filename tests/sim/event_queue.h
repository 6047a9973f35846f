// Simulated time: what happens is put in a queue, and the clock jumps from event to event.
#pragma once

#include <cstdint>
#include <functional>
#include <queue>
#include <vector>

#include "core/clock.h"

namespace omniset::sim {

class EventQueue : public Clock {
 public:
  using Action = std::function<void()>;

  Micros now() const override { return now_; }
  void at(Micros time, Action action);
  void after(Micros delay, Action action) { at(now_ + delay, std::move(action)); }

  // Lets the next event happen; false when there is none.
  bool step();

 private:
  struct Event {
    Micros time;
    std::uint64_t order;  // events of one time happen in the order in which they were put in
    Action action;
    bool operator<(const Event& other) const {
      return time != other.time ? time > other.time : order > other.order;
    }
  };

  Micros now_ = 1000 * kSecond;
  std::uint64_t lastOrder_ = 0;
  std::priority_queue<Event> events_;
};

}  // namespace omniset::sim
