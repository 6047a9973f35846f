// The processor's instructions that C++ has no words for.
#pragma once

#include <cstdint>

namespace omniset::loader {

inline void writePort(std::uint32_t port, std::uint8_t value) {
  asm volatile("outb %0, %1" : : "a"(value), "d"(static_cast<std::uint16_t>(port)));
}

inline std::uint8_t readPort(std::uint32_t port) {
  std::uint8_t value;
  asm volatile("inb %1, %0" : "=a"(value) : "d"(static_cast<std::uint16_t>(port)));
  return value;
}

// At the latest that of the timer.
inline void waitForInterrupt() {
  asm volatile("sti; hlt" : : : "memory");
}

}  // namespace omniset::loader
