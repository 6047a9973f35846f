// Sends the trace to a stream while it lives, or drops it.
#pragma once

#include <ostream>
#include <string_view>

#include "core/trace.h"

namespace omniset {

// Trace lines carry bytes from the network: control characters are shown escaped.
class TraceOutput : public TraceSink {
 public:
  TraceOutput(std::ostream& out, bool enabled)
      : out_(out), before_(setTraceSink(enabled ? this : nullptr)) {}
  ~TraceOutput() override { setTraceSink(before_); }
  TraceOutput(const TraceOutput&) = delete;
  TraceOutput& operator=(const TraceOutput&) = delete;

  void write(std::string_view text) override;

 private:
  std::ostream& out_;
  TraceSink* before_;
};

}  // namespace omniset
