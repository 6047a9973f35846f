// A handle of Windows that closes itself.
#pragma once

#include <windows.h>

#include <utility>

namespace omniset {

class Win32Handle {
 public:
  Win32Handle() = default;
  // INVALID_HANDLE_VALUE is none, too.
  explicit Win32Handle(HANDLE handle)
      : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Win32Handle(Win32Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Win32Handle& operator=(Win32Handle&& other) noexcept {
    close();
    handle_ = std::exchange(other.handle_, nullptr);
    return *this;
  }
  ~Win32Handle() { close(); }

  HANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }
  bool close() { return handle_ == nullptr || CloseHandle(std::exchange(handle_, nullptr)); }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace omniset
