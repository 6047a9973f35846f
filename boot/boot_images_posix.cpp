#include <cerrno>

#include "boot/boot_images.h"
#include "core/byte_cursor.h"
#include "core/error.h"
#include "core/os_error.h"

// From the build: rows of an image's number and its distance from the table, ended by a number 0.
extern "C" const std::int32_t omniset_boot_image_table[];

namespace omniset {

BootImage loadBootImage(int number) {
  for (const std::int32_t* row = omniset_boot_image_table; row[0] != 0; row += 2) {
    if (row[0] != number) continue;
    const auto* stored = reinterpret_cast<const std::uint8_t*>(omniset_boot_image_table) + row[1];
    return {stored + 4, ByteReader(std::span(stored, 4)).u32le()};
  }
  setLastOsError(ENOENT);
  throw Error("FindResource()");
}

}  // namespace omniset
