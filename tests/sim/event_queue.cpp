#include "event_queue.h"

#include <algorithm>

namespace omniset::sim {

void EventQueue::at(Micros time, Action action) {
  events_.push({std::max(time, now_), ++lastOrder_, std::move(action)});
}

bool EventQueue::step() {
  if (events_.empty()) return false;
  Event event = events_.top();
  events_.pop();
  now_ = event.time;
  event.action();
  return true;
}

}  // namespace omniset::sim
