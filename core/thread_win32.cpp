#include <windows.h>

#include <atomic>
#include <functional>
#include <stdexcept>

#include "core/error.h"
#include "core/thread.h"
#include "core/trace.h"

namespace omniset {

struct ThreadBase::Native {
  HANDLE handle = nullptr;
  std::atomic<bool> jobEnded = false;
  // The owner's earlier thread, if that one ignored its stop event.
  std::shared_ptr<Native> before;

  ~Native() { close(); }
  void close() {
    if (handle) CloseHandle(handle);
    handle = nullptr;
  }
};

namespace {

constexpr DWORD kTerminatedExitCode = 0xFFFFFFFF;

// TerminateThread returns before the thread is gone. One that is stuck inside the system may never
// go, but then it touches nothing of the program either.
constexpr DWORD kEndLimitMs = 5000;

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

void ThreadBase::start() {
  if (started_) throw std::runtime_error("thread already started");
  auto native = std::make_shared<Native>();
  if (native_ && isActive(native_->handle)) native->before = native_;
  auto body = std::make_unique<Body>(
      [this, native, name = name_] { threadEntry(*this, name, GetCurrentThreadId(), *native); });
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

void ThreadBase::terminateIfActive() {
  for (; native_; native_ = native_->before) {
    const HANDLE thread = native_->handle;
    // Terminated now, it might leave behind a lock of the trace or of the system for ever.
    if (native_->jobEnded) WaitForSingleObject(thread, kEndLimitMs);
    if (isActive(thread)) {
      traceLine("thread still active, terminating");
      TerminateThread(thread, kTerminatedExitCode);
      WaitForSingleObject(thread, kEndLimitMs);
    }
    native_->close();
  }
}

}  // namespace omniset
