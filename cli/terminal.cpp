#include "cli/terminal.h"

namespace omniset {

bool mayRedraw(bool json, bool trace) {
  return !trace && !(json && isStandardOutputTerminal()) && standardErrorTerminal().has_value();
}

}  // namespace omniset
