#include "largest_allocation.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t largest = 0;

}  // namespace

// Replace the program's own, which all other forms of new and delete but the aligned ones call.
void* operator new(std::size_t size) {
  largest = std::max(largest, size);
  if (void* memory = std::malloc(std::max<std::size_t>(size, 1))) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace omniset::test {

LargestAllocation::LargestAllocation() {
  largest = 0;
}
std::size_t LargestAllocation::bytes() const {
  return largest;
}

}  // namespace omniset::test
