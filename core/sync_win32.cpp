#include <windows.h>

#include <stdexcept>

#include "core/error.h"
#include "core/rest_win32.h"
#include "core/sync.h"

namespace omniset {

namespace {

// False when the time ran out. An abandoned mutex counts as obtained.
bool waitForObject(HANDLE handle, int timeoutMs) {
  const DWORD limit = timeoutMs == kForever ? INFINITE : static_cast<DWORD>(timeoutMs);
  DWORD result;
  {
    const Rest rest;
    result = WaitForSingleObject(handle, limit);
  }
  if (result == WAIT_FAILED) throw Error("Object WaitForSingleObject");
  return result != WAIT_TIMEOUT;
}

}  // namespace

struct Mutex::Native {
  HANDLE handle;
};

Mutex::Mutex(const std::string& name)
    : native_(new Native{CreateMutexA(nullptr, FALSE, name.empty() ? nullptr : name.c_str())}) {
  if (!native_->handle) throw Error("Mutex CreateMutex");
}

Mutex::~Mutex() {
  CloseHandle(native_->handle);
}

void Mutex::wait(int timeoutMs) {
  if (!waitForObject(native_->handle, timeoutMs)) throw std::runtime_error("Mutex wait timeouted");
}

void Mutex::release() {
  if (!ReleaseMutex(native_->handle)) throw Error("Mutex ReleaseMutex");
}

struct Event::Native {
  HANDLE handle;
};

Event::Event(bool manualReset, bool signalled)
    : native_(new Native{CreateEventA(nullptr, manualReset, signalled, nullptr)}) {
  if (!native_->handle) throw Error("Event CreateEvent");
}

Event::~Event() {
  CloseHandle(native_->handle);
}

void Event::set() {
  if (!SetEvent(native_->handle)) throw Error("Event SetEvent");
}

void Event::reset() {
  if (!ResetEvent(native_->handle)) throw Error("Event ResetEvent");
}

void Event::pulse() {
  if (!PulseEvent(native_->handle)) throw Error("Event PulseEvent");
}

bool Event::wait(int timeoutMs) {
  return waitForObject(native_->handle, timeoutMs);
}

}  // namespace omniset
