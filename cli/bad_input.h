// Arguments or files that a command cannot work with.
#pragma once

#include "core/error.h"

namespace omniset {

// Its text is a sentence that says what is wrong and what to do; the program ends with
// kExitBadInput.
class BadInput : public Failure {
 public:
  using Failure::Failure;
};

}  // namespace omniset
