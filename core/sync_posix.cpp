#include <chrono>
#include <condition_variable>
#include <cstdint>
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
  {
    const std::lock_guard lock(native_->mutex);
    if (native_->depth == 0 || native_->owner != std::this_thread::get_id()) {
      setLastOsError(osErrorNotOwner());
      throw Error("Mutex ReleaseMutex");
    }
    if (--native_->depth > 0) return;
  }
  native_->freed.notify_one();
}

struct Event::Native {
  std::mutex mutex;
  std::condition_variable changed;
  bool manualReset;
  bool signalled;
  std::uint64_t waiting = 0;
  std::uint64_t generation = 0;  // counts the pulses that released all who waited
  std::uint64_t pulsedOne = 0;   // pulses for one waiter each, not yet taken
};

Event::Event(bool manualReset, bool signalled) : native_(std::make_unique<Native>()) {
  native_->manualReset = manualReset;
  native_->signalled = signalled;
}

Event::~Event() = default;

void Event::set() {
  const std::lock_guard lock(native_->mutex);
  native_->signalled = true;
  native_->changed.notify_all();
}

void Event::reset() {
  const std::lock_guard lock(native_->mutex);
  native_->signalled = false;
}

void Event::pulse() {
  const std::lock_guard lock(native_->mutex);
  native_->signalled = false;
  if (native_->manualReset) {
    ++native_->generation;
  } else if (native_->pulsedOne < native_->waiting) {
    ++native_->pulsedOne;
  }
  native_->changed.notify_all();
}

bool Event::wait(int timeoutMs) {
  std::unique_lock lock(native_->mutex);
  Native& n = *native_;
  const std::uint64_t came = n.generation;
  const auto released = [&] {
    return n.signalled || n.generation != came || n.pulsedOne > 0;
  };
  ++n.waiting;
  const bool inTime = waitUntil(n.changed, lock, timeoutMs, released);
  --n.waiting;
  if (!inTime) return false;
  if (n.generation != came) return true;
  if (n.pulsedOne > 0) {
    --n.pulsedOne;
  } else if (!n.manualReset) {
    n.signalled = false;
  }
  return true;
}

}  // namespace omniset
