#include <atomic>
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
  // The thread has only its exit left to trace.
  std::atomic<bool> jobEnded = false;
  Event finished{true, false};
  // Set when the thread needs its owner no more.
  Event independent{true, false};
  std::shared_ptr<const void> job;
  // The owner's earlier thread, if that one ignored its stop event.
  std::shared_ptr<Native> before;

  static thread_local Native* ofThisThread;
};

thread_local ThreadBase::Native* ThreadBase::Native::ofThisThread = nullptr;

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
  if (native_ && !native_->finished.wait(0)) native->before = native_;
  try {
    std::thread([this, native, name = name_, id] {
      Native::ofThisThread = native.get();
      threadEntry(*this, name, id, *native);
      native->job.reset();
      native->finished.set();
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
  if (!native_->finished.wait(stopTimeoutMs_)) traceLine("ignoring 'terminate': " + name_);
  started_ = false;
}

unsigned long ThreadBase::exitCode() const {
  if (!native_) {
    setLastOsError(ESRCH);
    throw Error("GetExitCodeThread");
  }
  return native_->finished.wait(0) ? 0 : kStillActive;
}

void ThreadBase::jobEnded(Native& native) {
  native.jobEnded = true;
  native.independent.set();
}

void ThreadBase::keepJob(std::shared_ptr<const void> job) {
  Native::ofThisThread->job = std::move(job);
  Native::ofThisThread->independent.set();
}

void ThreadBase::terminateIfActive() {
  for (; native_; native_ = native_->before) {
    if (!native_->jobEnded) {
      traceLine("thread still active, terminating");
      native_->independent.wait();
    }
    if (native_->jobEnded) native_->finished.wait();
  }
}

}  // namespace omniset
