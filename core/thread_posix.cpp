#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <cerrno>

#include "core/error.h"
#include "core/os_error.h"
#include "core/thread.h"
#include "core/trace.h"

namespace omniset {

// Shared by the owner and the thread, because a thread that ignores its stop event outlives its
// owner here: POSIX has no safe way to end it from outside.
struct ThreadBase::Native {
  std::mutex mutex;
  std::condition_variable changed;
  bool holdsJob = false;
  bool finished = false;

  void raise(bool Native::* flag) {
    const std::lock_guard lock(mutex);
    this->*flag = true;
    changed.notify_all();
  }
};

namespace {

unsigned long nextThreadId() {
  static std::mutex mutex;
  static unsigned long last = 0;
  const std::lock_guard lock(mutex);
  return ++last;
}

}  // namespace

void ThreadBase::start() {
  if (started_) throw std::runtime_error("thread already started");
  const unsigned long id = nextThreadId();
  auto native = std::make_shared<Native>();
  try {
    std::thread([this, native, name = name_, id] {
      threadEntry(*this, name, id);
      native->raise(&Native::finished);
    }).detach();
  } catch (const std::system_error& e) {
    setLastOsError(e.code().value());
    throw Error("CreateThread");
  }
  native_ = std::move(native);
  tracef("start thread: %lu\n", id);
  started_ = true;
}

void ThreadBase::stop() {
  if (!started_) throw std::runtime_error("stopping stopped thread");
  if (stopEvent_) stopEvent_->set();
  std::unique_lock lock(native_->mutex);
  const auto limit = std::chrono::milliseconds(stopTimeoutMs_);
  if (!native_->changed.wait_for(lock, limit, [&] { return native_->finished; })) {
    traceLine("ignoring 'terminate': " + name_);
  }
  started_ = false;
}

unsigned long ThreadBase::exitCode() const {
  if (!native_) {
    setLastOsError(ESRCH);
    throw Error("GetExitCodeThread");
  }
  const std::lock_guard lock(native_->mutex);
  return native_->finished ? 0 : kStillActive;
}

void ThreadBase::holdsJob() { native_->raise(&Native::holdsJob); }

void ThreadBase::terminateIfActive() {
  if (!native_) return;
  std::unique_lock lock(native_->mutex);
  if (!native_->finished) {
    traceLine("thread still active, terminating");
    native_->changed.wait(lock, [&] { return native_->finished || native_->holdsJob; });
  }
  lock.unlock();
  native_.reset();
}

}  // namespace omniset
