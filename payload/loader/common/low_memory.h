// What is where below 1 MB while a loader runs. Everything of the loader itself is in the first
// 64 KB: its code from 7C00h on, behind that its data, below it its stack.
#pragma once

#include <cstdint>

namespace omniset::loader {

// The kernel's real-mode part, with its stack and heap above it, and behind them its command line.
inline constexpr std::uint32_t kSetupAt = 0x10000;
inline constexpr std::uint32_t kSetupRoom = 0x8000;
inline constexpr std::uint32_t kSetupStackTop = 0xE000;  // from kSetupAt
inline constexpr std::uint32_t kCommandLineAt = kSetupAt + kSetupStackTop;
inline constexpr std::uint32_t kCommandLineRoom = 0x1000;

// Through here files come into memory: 64 KB that one segment reaches.
inline constexpr std::uint32_t kTransferAt = 0x20000;
inline constexpr std::uint32_t kTransferRoom = 0x10000;

// What must be free below the memory of BIOS and boot ROM.
inline constexpr std::uint32_t kLowMemoryEnd = kTransferAt + kTransferRoom;

}  // namespace omniset::loader
