#include <windows.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <stdexcept>

#include "core/error.h"
#include "core/rest_win32.h"
#include "core/thread.h"
#include "core/trace.h"

namespace omniset {

struct ThreadBase::Native {
  HANDLE handle = nullptr;
  std::atomic<bool> jobEnded = false;
  // Held by the thread, but while it rests.
  std::timed_mutex working;
  // The owner's earlier thread, if that one ignored its stop event.
  std::shared_ptr<Native> before;

  ~Native() { close(); }
  void close() {
    if (handle) CloseHandle(handle);
    handle = nullptr;
  }
  void end();
};

namespace {

constexpr DWORD kTerminatedExitCode = 0xFFFFFFFF;

// TerminateThread returns before the thread is gone. One that is stuck inside the system may never
// go, but then it touches nothing of the program either.
constexpr DWORD kEndLimitMs = 5000;

// For a thread to come to a rest, and from there into the wait itself.
constexpr std::chrono::seconds kRestLimit{2};
constexpr DWORD kSettlingMs = 20;

thread_local std::timed_mutex* workingOfThisThread = nullptr;

using Body = std::function<void()>;

DWORD WINAPI enterThread(void* parameter) {
  const std::unique_ptr<Body> body(static_cast<Body*>(parameter));
  (*body)();
  return 0;
}

bool isActive(HANDLE thread) {
  DWORD code = 0;
  return GetExitCodeThread(thread, &code) && code == ThreadBase::kStillActive;
}

}  // namespace

Rest::Rest() {
  if (workingOfThisThread) workingOfThisThread->unlock();
}

// What the wait has left as its error is for its caller.
Rest::~Rest() {
  const DWORD error = GetLastError();
  if (workingOfThisThread) workingOfThisThread->lock();
  SetLastError(error);
}

void ThreadBase::start() {
  if (started_) throw std::runtime_error("thread already started");
  auto native = std::make_shared<Native>();
  if (native_ && isActive(native_->handle)) native->before = native_;
  auto body = std::make_unique<Body>([this, native, name = name_] {
    const std::lock_guard working(native->working);
    workingOfThisThread = &native->working;
    threadEntry(*this, name, GetCurrentThreadId(), *native);
  });
  DWORD id = 0;
  native->handle = CreateThread(nullptr, 0, enterThread, body.get(), 0, &id);
  if (!native->handle) throw Error("CreateThread");
  static_cast<void>(body.release());
  native_ = std::move(native);
  tracef("start thread: %lu\n", id);
  started_ = true;
}

void ThreadBase::stop() {
  if (!started_) throw std::runtime_error("stopping stopped thread");
  if (stopEvent_) stopEvent_->set();
  if (native_) {
    const DWORD result = WaitForSingleObject(native_->handle, static_cast<DWORD>(stopTimeoutMs_));
    if (result == WAIT_FAILED) throw Error("Object WaitForSingleObject");
    if (result == WAIT_TIMEOUT) traceLine("ignoring 'terminate': " + name_);
  }
  started_ = false;
}

unsigned long ThreadBase::exitCode() const {
  DWORD code = 0;
  if (!GetExitCodeThread(native_ ? native_->handle : nullptr, &code)) {
    throw Error("GetExitCodeThread");
  }
  return code;
}

void ThreadBase::jobEnded(Native& native) {
  native.jobEnded = true;
}

// Threads can be ended here, and a share that one of them held would then never be given back.
void ThreadBase::keepJob(std::shared_ptr<const void> /*job*/) {}

// Ends the thread where it rests. One that never does is ended where it is: better a program that
// may hang at its end than one that surely does.
void ThreadBase::Native::end() {
  const bool rests = working.try_lock_for(kRestLimit);
  if (rests) Sleep(kSettlingMs);
  if (jobEnded) WaitForSingleObject(handle, kEndLimitMs);
  if (isActive(handle)) {
    TerminateThread(handle, kTerminatedExitCode);
    WaitForSingleObject(handle, kEndLimitMs);
  }
  if (rests) working.unlock();
}

void ThreadBase::terminateIfActive() {
  for (; native_; native_ = native_->before) {
    // With its job ended it has only its last lines to trace.
    if (native_->jobEnded) WaitForSingleObject(native_->handle, kEndLimitMs);
    if (isActive(native_->handle)) {
      traceLine("thread still active, terminating");
      native_->end();
    }
    native_->close();
  }
}

}  // namespace omniset
