#include "cli/trace_output.h"

#include "core/shown_text.h"

namespace omniset {

void TraceOutput::write(std::string_view text) {
  out_ << escapedText(text) << std::flush;
}

}  // namespace omniset
