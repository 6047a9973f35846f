// Memory within another process, for the messages that take the address of a structure: the system
// hands such an address over as it is.
#pragma once

#include <windows.h>

#include <cstddef>

namespace omniset::test {

// Raises WindowFault when the process gives no memory.
class RemoteMemory {
 public:
  RemoteMemory(HANDLE process, std::size_t size);
  ~RemoteMemory();
  RemoteMemory(const RemoteMemory&) = delete;
  RemoteMemory& operator=(const RemoteMemory&) = delete;

  // The address in the other process, `offset` bytes from the start.
  char* address(std::size_t offset = 0) const { return start_ + offset; }
  void write(const void* from, std::size_t size);
  void read(void* into, std::size_t size, std::size_t offset = 0) const;

 private:
  HANDLE process_;
  char* start_;
};

}  // namespace omniset::test
