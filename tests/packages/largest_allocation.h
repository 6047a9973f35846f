// Tells how much memory the code under test asks for at once.
#pragma once

#include <cstddef>

namespace omniset::test {

// The largest single request for memory, in bytes, that this program made since this object came
// into being. Of one thread, one object at a time.
class LargestAllocation {
 public:
  LargestAllocation();
  std::size_t bytes() const;
};

}  // namespace omniset::test
