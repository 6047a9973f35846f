// Names of files that come from elsewhere, and what FAT volumes make of names.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace omniset {

constexpr std::size_t kLongestFileName = 200;

// Names a file in a folder and nothing else: not a path, not hidden, no control characters.
bool isSafeFileName(std::string_view name);

// A safe name that a FAT volume can hold on any system, and that is not one of those that FAT gives
// itself to long names ("SYSTEM~1.BDL").
bool isFatFileName(std::string_view name);

// How many entries of a folder it takes at most on a FAT volume.
std::size_t fatEntriesOf(std::string_view name);

// Equal but for case, of the letters of Latin-1 too: so a FAT volume compares.
bool isSameFileName(std::string_view a, std::string_view b);

// Equal for names that are the same.
std::string foldedFileName(std::string_view name);

// The name of a package: "*.bdl", in whatever case.
bool isPackageFileName(std::string_view name);

}  // namespace omniset
