// A queue between threads: a mutex, an event that is set while the queue is not empty, a deque.
#pragma once

#include <deque>
#include <optional>
#include <utility>

#include "core/sync.h"

namespace omniset {

// All operations may be called by any thread, and wait for the mutex at most the given time.
template <class T>
class LockedQueue {
 public:
  void push(T item, int timeoutMs = kForever) {
    const ScopedLock lock(mutex_, timeoutMs);
    items_.push_back(std::move(item));
    notEmpty_.set();
  }

  // In place of whatever waits: a reader that comes late sees the latest alone.
  void pushLatest(T item, int timeoutMs = kForever) {
    const ScopedLock lock(mutex_, timeoutMs);
    items_.clear();
    items_.push_back(std::move(item));
    notEmpty_.set();
  }

  // The oldest item, or nothing.
  std::optional<T> pop(int timeoutMs = kForever) {
    const ScopedLock lock(mutex_, timeoutMs);
    if (items_.empty()) return std::nullopt;
    std::optional<T> item(std::move(items_.front()));
    items_.pop_front();
    if (items_.empty()) notEmpty_.reset();
    return item;
  }

  // Manual-reset; to wait on only: the queue sets and resets it.
  Event& notEmpty() { return notEmpty_; }

 private:
  Mutex mutex_;
  Event notEmpty_{true, false};
  std::deque<T> items_;
};

}  // namespace omniset
