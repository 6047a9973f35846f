// Collects the trace while it lives.
#pragma once

#include <string>

#include "core/trace.h"

namespace omniset::test {

class CapturedTrace : public TraceSink {
 public:
  CapturedTrace();
  ~CapturedTrace() override;
  void write(std::string_view text) override { text_.append(text); }

  // All that was traced so far. Not while other threads trace.
  const std::string& text() const { return text_; }
  bool contains(std::string_view part) const { return text_.find(part) != std::string::npos; }
  void clear() { text_.clear(); }

 private:
  std::string text_;
  TraceSink* before_;
};

// Drops the trace while it lives.
class SilentTrace {
 public:
  SilentTrace() : before_(setTraceSink(nullptr)) {}
  ~SilentTrace() { setTraceSink(before_); }
  SilentTrace(const SilentTrace&) = delete;
  SilentTrace& operator=(const SilentTrace&) = delete;

 private:
  TraceSink* before_;
};

}  // namespace omniset::test
