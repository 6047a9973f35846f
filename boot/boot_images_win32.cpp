#include <windows.h>

#include "boot/boot_images.h"
#include "core/byte_cursor.h"
#include "core/error.h"

namespace omniset {

BootImage loadBootImage(int number) {
  const HMODULE program = GetModuleHandleA(nullptr);
  const HRSRC found = FindResourceA(program, MAKEINTRESOURCEA(number), RT_RCDATA);
  if (found == nullptr) throw Error("FindResource()");
  const HGLOBAL loaded = LoadResource(program, found);
  if (loaded == nullptr) throw Error("LoadResource()");
  const auto* stored = static_cast<const std::uint8_t*>(LockResource(loaded));
  if (stored == nullptr) throw Error("LockResource()");
  return {stored + 4, ByteReader(std::span(stored, 4)).u32le()};
}

}  // namespace omniset
