// Where a worker thread that ignores its stop event may be ended. TerminateThread leaves behind
// whatever the thread holds at that moment, for ever: locks of the heap, of the trace, of the
// system's tables. A thread that rests holds none.
#pragma once

namespace omniset {

// Lives while the calling thread waits in the system, and does nothing but that. Its destructor
// does not return in a thread that is being ended. Nothing to threads that ThreadBase did not
// start.
class Rest {
 public:
  Rest();
  ~Rest();
  Rest(const Rest&) = delete;
  Rest& operator=(const Rest&) = delete;
};

}  // namespace omniset
