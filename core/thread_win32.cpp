#include <windows.h>

#include <stdexcept>

#include "core/error.h"
#include "core/thread.h"
#include "core/trace.h"

namespace omniset {

struct ThreadBase::Native {
  HANDLE handle = nullptr;
  ~Native() {
    if (handle) CloseHandle(handle);
  }
};

namespace {

constexpr DWORD kTerminatedExitCode = 0xFFFFFFFF;

// What the new thread needs before its object may be touched.
struct Start {
  ThreadBase* base;
  void (*entry)(ThreadBase&, const std::string&, unsigned long);
  std::string name;
};

DWORD WINAPI enterThread(void* parameter) {
  const std::unique_ptr<Start> start(static_cast<Start*>(parameter));
  start->entry(*start->base, start->name, GetCurrentThreadId());
  return 0;
}

}  // namespace

void ThreadBase::start() {
  if (started_) throw std::runtime_error("thread already started");
  auto native = std::make_shared<Native>();
  auto start = std::make_unique<Start>(Start{this, &ThreadBase::threadEntry, name_});
  DWORD id = 0;
  native->handle = CreateThread(nullptr, 0, enterThread, start.get(), 0, &id);
  if (!native->handle) throw Error("CreateThread");
  static_cast<void>(start.release());
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

// Threads can be ended here, so nothing need be known of what they hold.
void ThreadBase::holdsJob() {}

void ThreadBase::terminateIfActive() {
  if (!native_) return;
  DWORD code = 0;
  if (GetExitCodeThread(native_->handle, &code) && code == kStillActive) {
    traceLine("thread still active, terminating");
    TerminateThread(native_->handle, kTerminatedExitCode);
  }
  native_.reset();
}

}  // namespace omniset
