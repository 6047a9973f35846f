#include "core/os_error.h"

#include <windows.h>

namespace omniset {

long lastOsError() {
  return static_cast<long>(GetLastError());
}

// Winsock keeps its error in the thread's last error; asking there spares this file the library.
long lastSocketError() {
  return static_cast<long>(GetLastError());
}

void setLastOsError(long code) {
  SetLastError(static_cast<DWORD>(code));
}

std::string osErrorText(long code) {
  const DWORD before = GetLastError();
  char buffer[100] = "";
  const DWORD length =
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(code), 0, buffer, sizeof buffer, nullptr);
  SetLastError(before);
  return std::string(buffer, length);
}

long osErrorNotOwner() {
  return ERROR_NOT_OWNER;
}

}  // namespace omniset
