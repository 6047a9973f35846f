// The layout of package files (.bdl), as far as the program reads it; docs/package-format.md tells
// the whole of it. All integers are little-endian, all widths are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/byte_cursor.h"

namespace omniset {

constexpr std::uint32_t kPackageMagic = 0xBAD0F11E;
constexpr std::size_t kFileHeaderWidth = 8;     // magic, number of bytes that follow
constexpr std::size_t kSectionHeaderWidth = 6;  // type (u16), size of the payload (u32)

// Section types. All others are passed over unread.
constexpr std::uint16_t kPackageSection = 1;
constexpr std::uint16_t kDescriptionSection = 2;
constexpr std::uint16_t kDependencySection = 3;

constexpr std::size_t kPackageNameWidth = 16;
constexpr std::size_t kPackageHeaderWidth = 32;    // what is read of a package section
constexpr std::size_t kDependencyCountWidth = 2;   // at the start of a dependency section
constexpr std::size_t kDependencyEntryWidth = 32;  // each entry behind the count

// A version word: major, minor, kind (a letter), build, from the highest byte to the lowest.
// Versions compare as plain unsigned numbers; 0 and this value stand for any version.
constexpr std::uint32_t kAnyVersion = 0xFFFFFFFF;

struct PackageHeader {
  std::string name;
  std::uint32_t version = 0;
};

struct PackageDependency {
  std::string name;
  std::uint32_t minVersion = 0;
  // The highest version that will do; 0 in a file for "no upper bound".
  std::uint32_t maxVersion = 0;

  bool accepts(std::uint32_t version) const {
    return version >= minVersion && version <= maxVersion;
  }
};

// These two take 32 bytes from the cursor, whose ok() the caller asks.
PackageHeader parsePackageHeader(ByteReader& bytes);
PackageDependency parseDependency(ByteReader& bytes);

// The text to show for the payload of a description section: up to the first NUL, without its first
// character and its last three (of a text shorter than four only the first is dropped), with a
// space for each line feed. Raises std::out_of_range when the text is empty.
std::string descriptionText(std::string_view payload);

}  // namespace omniset
