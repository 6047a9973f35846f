// Calls of the BIOS, and the ends of the loader. Only for code that runs in real mode.
#pragma once

#include <cstdint>

namespace omniset::loader {

struct BiosRegisters {
  std::uint32_t ax = 0;
  std::uint32_t bx = 0;
  std::uint32_t cx = 0;
  std::uint32_t dx = 0;
  std::uint32_t si = 0;
  std::uint32_t di = 0;
};

inline constexpr std::uint32_t kCarryFlag = 0x01;
inline constexpr std::uint32_t kZeroFlag = 0x40;

// The offset of an object of the loader, all of which are in segment 0.
inline std::uint32_t offsetOf(const void* object) {
  return reinterpret_cast<std::uintptr_t>(object);
}

extern "C" {

// With DS and ES 0. Returns the flags that came back.
std::uint32_t biosCall(std::uint32_t interrupt, BiosRegisters* registers);

// Jumps to the kernel's real-mode part, as the header at kSetupAt says.
[[noreturn]] void startKernel();

[[noreturn]] void restartPc();

// What ends the hardware's part in the boot, before the kernel or a restart: a network card must
// not write into memory any more. Each loader has its own.
void closeHardware();

// In the BIOS's data area.
extern volatile std::uint16_t biosSerialPort;  // 0: there is none
extern volatile std::uint16_t biosTicks;       // 18.2 a second
extern volatile std::uint16_t biosFirstKey;    // of those that nobody has taken
extern volatile std::uint16_t biosNextKey;     // the same when there is none
}

}  // namespace omniset::loader
