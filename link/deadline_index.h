// Deadlines of many owners: the nearest one is found at once, and moving one costs the logarithm of
// their number and no memory.
#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "core/clock.h"

namespace omniset {

template <class Key>
class DeadlineIndex {
 public:
  using Handle = typename std::multimap<Micros, Key>::iterator;

  Handle add(Micros deadline, const Key& key) { return byTime_.emplace(deadline, key); }
  void remove(Handle handle) { byTime_.erase(handle); }

  // Returns the handle that replaces the given one.
  Handle move(Handle handle, Micros deadline) {
    auto node = byTime_.extract(handle);
    node.key() = deadline;
    return byTime_.insert(std::move(node));
  }

  std::optional<Micros> nearest() const {
    if (byTime_.empty()) return std::nullopt;
    return byTime_.begin()->first;
  }

  // The owners whose deadline is not later than `now`.
  void collectDue(Micros now, std::vector<Key>& due) const {
    due.clear();
    for (auto at = byTime_.begin(); at != byTime_.end() && at->first <= now; ++at) {
      due.push_back(at->second);
    }
  }

 private:
  std::multimap<Micros, Key> byTime_;
};

}  // namespace omniset
