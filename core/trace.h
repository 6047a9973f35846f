// The trace: short diagnostic lines, on standard output unless the program sends them elsewhere.
// There is one trace per process. Every function here may be called from any thread; one call's
// text is never interleaved with another's.
#pragma once

#include <string_view>

#include "core/format_text.h"

namespace omniset {

class TraceSink {
 public:
  virtual ~TraceSink() = default;
  // Takes a piece of trace text: a part of a line, a line or several. Calls never overlap.
  virtual void write(std::string_view text) = 0;
};

// Sends the trace to `sink`, which must outlive its use here; null drops it. Returns the sink that
// was in use. At program start the trace goes to standard output, flushed after each piece.
TraceSink* setTraceSink(TraceSink* sink);

// False when the trace is dropped: spares the caller the making of a long text.
bool traceEnabled();

void trace(std::string_view text);
void tracef(const char* format, ...) OMNISET_PRINTF(1, 2);

// The text, a line end.
void traceLine(std::string_view text);

}  // namespace omniset
