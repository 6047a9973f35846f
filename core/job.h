// A job: work with a body and a stop event, run by a Thread.
#pragma once

#include "core/sync.h"

namespace omniset {

class Code {
 public:
  Code() : stopEvent_(true, false) {}
  virtual ~Code() = default;
  Code(const Code&) = delete;
  Code& operator=(const Code&) = delete;

  // The body. Ends soon after the stop event is signalled. Runs in the worker thread; what it
  // throws ends the thread and goes to the trace.
  virtual void run() = 0;

  Event& stopEvent() { return stopEvent_; }

 private:
  Event stopEvent_;
};

}  // namespace omniset
