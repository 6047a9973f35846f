#include "captured_trace.h"

namespace omniset::test {

CapturedTrace::CapturedTrace() : before_(setTraceSink(this)) {}
CapturedTrace::~CapturedTrace() {
  setTraceSink(before_);
}

}  // namespace omniset::test
