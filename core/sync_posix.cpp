#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "core/error.h"
#include "core/os_error.h"
#include "core/sync.h"

namespace omniset {

namespace {

// Waits until `ready`, at most the given time; false when the time ran out.
template <class Ready>
bool waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, int timeoutMs,
               Ready ready) {
  if (timeoutMs == 0) return ready();
  if (timeoutMs == kForever) {
    changed.wait(lock, ready);
    return true;
  }
  return changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), ready);
}

}  // namespace

struct Mutex::Native {
  std::mutex mutex;
  std::condition_variable freed;
  std::thread::id owner;
  unsigned depth = 0;
};

Mutex::Mutex(const std::string& /*name*/) : native_(std::make_unique<Native>()) {}
Mutex::~Mutex() = default;

void Mutex::wait(int timeoutMs) {
  const auto self = std::this_thread::get_id();
  std::unique_lock lock(native_->mutex);
  const auto ours = [&] { return native_->depth == 0 || native_->owner == self; };
  if (!waitUntil(native_->freed, lock, timeoutMs, ours)) {
    throw std::runtime_error("Mutex wait timeouted");
  }
  native_->owner = self;
  ++native_->depth;
}

void Mutex::release() {
  // Held to the end: the thread that obtains the mutex next may destroy it.
  const std::lock_guard lock(native_->mutex);
  if (native_->depth == 0 || native_->owner != std::this_thread::get_id()) {
    setLastOsError(osErrorNotOwner());
    throw Error("Mutex ReleaseMutex");
  }
  if (--native_->depth == 0) native_->freed.notify_one();
}

// A thread that waits is released by the call that signals the event, not by finding the event
// signalled once it runs again: a reset right after a set, or a wait by another thread, takes
// nothing from it.
struct Event::Native {
  struct Waiter {
    bool released = false;
  };

  std::mutex mutex;
  std::condition_variable changed;
  bool manualReset;
  bool signalled;
  std::list<Waiter*> waiting;  // in the order of their coming

  void releaseFirst() {
    waiting.front()->released = true;
    waiting.pop_front();
    changed.notify_all();
  }
  void releaseAll() {
    while (!waiting.empty()) releaseFirst();
  }
};

Event::Event(bool manualReset, bool signalled) : native_(std::make_unique<Native>()) {
  native_->manualReset = manualReset;
  native_->signalled = signalled;
}

Event::~Event() = default;

void Event::set() {
  const std::lock_guard lock(native_->mutex);
  if (!native_->manualReset && !native_->waiting.empty()) {
    native_->releaseFirst();
    return;
  }
  native_->signalled = true;
  native_->releaseAll();
}

void Event::reset() {
  const std::lock_guard lock(native_->mutex);
  native_->signalled = false;
}

void Event::pulse() {
  const std::lock_guard lock(native_->mutex);
  native_->signalled = false;
  if (native_->manualReset) {
    native_->releaseAll();
  } else if (!native_->waiting.empty()) {
    native_->releaseFirst();
  }
}

bool Event::wait(int timeoutMs) {
  std::unique_lock lock(native_->mutex);
  if (native_->signalled) {
    native_->signalled = native_->manualReset;
    return true;
  }
  if (timeoutMs == 0) return false;
  Native::Waiter self;
  native_->waiting.push_back(&self);
  if (waitUntil(native_->changed, lock, timeoutMs, [&] { return self.released; })) return true;
  native_->waiting.remove(&self);
  return false;
}

}  // namespace omniset
