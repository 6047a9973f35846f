#include "tests/win/driver/remote_memory.h"

#include "tests/win/driver/waiting.h"

namespace omniset::test {

RemoteMemory::RemoteMemory(HANDLE process, std::size_t size)
    : process_(process),
      start_(static_cast<char*>(
          VirtualAllocEx(process, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
  if (!start_) throw WindowFault("no memory in the window's process");
}

RemoteMemory::~RemoteMemory() {
  VirtualFreeEx(process_, start_, 0, MEM_RELEASE);
}

void RemoteMemory::write(const void* from, std::size_t size) {
  if (!WriteProcessMemory(process_, start_, from, size, nullptr)) {
    throw WindowFault("cannot write into the window's process");
  }
}

void RemoteMemory::read(void* into, std::size_t size, std::size_t offset) const {
  if (!ReadProcessMemory(process_, start_ + offset, into, size, nullptr)) {
    throw WindowFault("cannot read from the window's process");
  }
}

}  // namespace omniset::test
