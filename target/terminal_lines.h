// What the PC's console shows: sentences, and below them the progress of the file that is coming,
// in a line of its own that is written over.
#pragma once

#include <functional>
#include <string>

#include "core/clock.h"
#include "target/target_console.h"

namespace omniset {

class TerminalLines : public TargetConsole {
 public:
  using Write = std::function<void(const std::string&)>;

  // The clock outlives this object. What `write` gets is for terminals that know the carriage
  // return and the sequence "erase to the end of the line" (ECMA-48).
  TerminalLines(Write write, const Clock& clock) : write_(std::move(write)), clock_(clock) {}

  void say(const std::string& sentence);
  void say(const MacAddress& /*target*/, const std::string& sentence) override { say(sentence); }
  void progress(const MacAddress& target, const std::string& file, std::int32_t stored,
                std::int32_t size) override;

 private:
  Write write_;
  const Clock& clock_;
  Micros nextProgress_ = 0;
  bool hasProgress_ = false;
};

}  // namespace omniset
