#include "core/thread.h"

#include <exception>

#include "core/trace.h"

namespace omniset {

ThreadBase::ThreadBase(std::string name, int stopTimeoutMs, Event* stopEvent)
    : name_(std::move(name)), stopTimeoutMs_(stopTimeoutMs), stopEvent_(stopEvent) {}

ThreadBase::~ThreadBase() {
  terminateIfActive();
}

void ThreadBase::threadEntry(ThreadBase& base, const std::string& name, unsigned long id,
                             Native& native) {
  struct AtEnd {
    Native& native;
    ~AtEnd() { jobEnded(native); }
  };
  try {
    const AtEnd atEnd{native};
    base.run();
  } catch (const std::exception& e) {
    tracef("In thread '%s' (id %lu): %s\n", name.c_str(), id, e.what());
  } catch (...) {
    tracef("In thread '%s' (id %lu): Unknown exception\n", name.c_str(), id);
  }
  tracef("exit thread: %lu\n", id);
}

}  // namespace omniset
