#include "core/trace.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>

namespace omniset {

namespace {

class StandardOutput : public TraceSink {
 public:
  void write(std::string_view text) override {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
  }
};

// Never destroyed: a worker thread may still trace while the process ends.
struct Trace {
  StandardOutput standardOutput;
  std::mutex mutex;
  std::atomic<TraceSink*> sink{&standardOutput};
};

Trace& theTrace() {
  static Trace& instance = *new Trace;
  return instance;
}

}  // namespace

TraceSink* setTraceSink(TraceSink* sink) {
  const std::lock_guard lock(theTrace().mutex);
  return theTrace().sink.exchange(sink);
}

bool traceEnabled() {
  return theTrace().sink.load(std::memory_order_relaxed) != nullptr;
}

void trace(std::string_view text) {
  if (!traceEnabled()) return;
  const std::lock_guard lock(theTrace().mutex);
  if (TraceSink* sink = theTrace().sink.load()) sink->write(text);
}

void tracef(const char* format, ...) {
  if (!traceEnabled()) return;
  std::va_list arguments;
  va_start(arguments, format);
  const std::string text = formatTextList(format, arguments);
  va_end(arguments);
  trace(text);
}

void traceLine(std::string_view text) {
  if (!traceEnabled()) return;
  trace(std::string(text) + "\n");
}

}  // namespace omniset
