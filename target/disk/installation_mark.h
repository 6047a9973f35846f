// The text file that makes an installation count. It is written last and lists what must be there:
//
//   Omniset installation 1
//   89abcdef 12345 system-2.9.7.bdl
//   check 1234abcd
//
// with a line per file of CRC-32, size in bytes and name, and the CRC-32 of all lines before the
// last. While an installation is going on, another text stands in the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace omniset {

constexpr const char* kMarkName = "omniset.ok";
// What a file is called until it is complete.
constexpr const char* kPartName = "omniset.tmp";

constexpr std::string_view kBegunMark = "An installation by Omniset has begun and not ended.\n";

constexpr std::size_t kMostMarkedFiles = 4096;
constexpr std::size_t kLongestMark = 1024 * 1024;

struct MarkedFile {
  std::string name;
  std::uint32_t size = 0;
  std::uint32_t crc = 0;

  bool operator==(const MarkedFile&) const = default;
};

using MarkedFiles = std::vector<MarkedFile>;

std::string makeMark(const MarkedFiles& files);

// Whatever the text: none unless it is to the letter what makeMark() makes, of names that
// isFileName() takes.
std::optional<MarkedFiles> parseMark(std::string_view text);

// A name that a file of an installation may have: fit for FAT, and not one of ours.
bool isFileName(std::string_view name);

}  // namespace omniset
