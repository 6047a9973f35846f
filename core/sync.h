// Mutual exclusion and events with bounded waits. The semantics are those of the Windows kernel
// objects on every system; the texts of the exceptions are the same everywhere.
#pragma once

#include <memory>
#include <string>
#include <utility>

namespace omniset {

constexpr int kForever = -1;

// Recursive, owned by the thread that waited for it. All operations may be called by any thread.
class Mutex {
 public:
  // A name makes the mutex common to all processes of the session that use that name (on POSIX the
  // name is not used: no part of the program shares one there). Raises Error "Mutex CreateMutex".
  explicit Mutex(const std::string& name = {});
  ~Mutex();
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  // Raises Error "Object WaitForSingleObject", and std::runtime_error "Mutex wait timeouted" when
  // the time runs out.
  void wait(int timeoutMs = kForever);
  // Raises Error "Mutex ReleaseMutex", for instance when the caller does not own the mutex.
  void release();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

class ScopedLock {
 public:
  explicit ScopedLock(Mutex& mutex, int timeoutMs = kForever) : mutex_(&mutex) {
    mutex_->wait(timeoutMs);
  }
  ScopedLock(ScopedLock&& other) noexcept : mutex_(std::exchange(other.mutex_, nullptr)) {}
  ScopedLock& operator=(ScopedLock&&) = delete;
  ~ScopedLock() {
    if (mutex_) mutex_->release();
  }

 private:
  Mutex* mutex_;
};

class Event {
 public:
  // Raises Error "Event CreateEvent".
  Event(bool manualReset, bool signalled);
  ~Event();
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  // These raise Error "Event SetEvent", "Event ResetEvent" and "Event PulseEvent".
  void set();
  void reset();
  // Releases the threads that wait now (one of them, if the event resets itself).
  void pulse();
  // True when the event is or becomes signalled in time; a self-resetting event is then taken.
  // Raises Error "Object WaitForSingleObject".
  bool wait(int timeoutMs = kForever);

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace omniset
