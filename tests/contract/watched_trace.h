// Collects the trace of several threads, and waits for lines of it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

#include "core/trace.h"

namespace omniset::test {

class WatchedTrace : public TraceSink {
 public:
  WatchedTrace() : before_(setTraceSink(this)) {}
  ~WatchedTrace() override { setTraceSink(before_); }

  void write(std::string_view text) override {
    const std::lock_guard lock(mutex_);
    text_.append(text);
    grown_.notify_all();
  }

  std::string text() const {
    const std::lock_guard lock(mutex_);
    return text_;
  }

  // True once the trace holds `part` that many times; false if it still does not after a minute.
  bool waitFor(const std::string& part, int times = 1) {
    std::unique_lock lock(mutex_);
    return grown_.wait_for(lock, std::chrono::minutes(1), [&] { return count(part) >= times; });
  }

 private:
  int count(const std::string& part) const {
    int found = 0;
    for (auto at = text_.find(part); at != std::string::npos; at = text_.find(part, at + 1)) {
      ++found;
    }
    return found;
  }

  mutable std::mutex mutex_;
  std::condition_variable grown_;
  std::string text_;
  TraceSink* before_;
};

}  // namespace omniset::test
