// Where a command writes.
#pragma once

#include <ostream>

namespace omniset {

struct Console {
  std::ostream& out;  // data
  std::ostream& err;  // progress and messages
};

}  // namespace omniset
