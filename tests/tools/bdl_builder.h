// Builds package files byte by byte: whole ones from a description of the package, and the parts
// from which a test puts together what no sound file contains. Bytes are kept in strings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "packages/package_format.h"

namespace omniset::test {

// The section type under which the payload is stored; the reader passes over it.
constexpr std::uint16_t kPayloadSection = 4;

constexpr std::uint32_t versionWord(unsigned major, unsigned minor, unsigned build = 0,
                                    char kind = 'f') {
  return major << 24 | minor << 16 | std::uint32_t{static_cast<std::uint8_t>(kind)} << 8 | build;
}

// Reads what versionText() writes ("2.9.7", "2.9beta3", "any"), each number at most 255; `kind` is
// the release kind of a text that names none.
std::optional<std::uint32_t> parseVersion(std::string_view text, char kind = 'f');

struct BdlPackage {
  std::string name = {};  // at most 16 characters are stored
  std::uint32_t version = versionWord(1, 0);
  std::string description = {};  // as it is to be shown
  std::vector<PackageDependency> dependencies = {};
  std::size_t payloadBytes = 0;
  std::uint64_t seed = 0;  // of the payload's contents
};

// The whole file. It has a dependency section only if there are dependencies, and a payload section
// only if there is payload.
std::string buildBdl(const BdlPackage& package);

std::string littleEndian16(std::uint16_t value);
std::string littleEndian32(std::uint32_t value);
// The bytes padded with NULs, or cut, to a width.
std::string padded(std::string_view bytes, std::size_t width);

// A file header and the sections behind it; the second form states a length of its own.
std::string bdlFile(std::string_view sections);
std::string bdlFile(std::string_view sections, std::uint32_t length);

// A section header and its payload; the second form states a size of its own.
std::string bdlSection(std::uint16_t type, std::string_view payload);
std::string bdlSection(std::uint16_t type, std::string_view payload, std::uint32_t size);

std::string bdlPackageSection(std::string_view name, std::uint32_t version);
// A payload that is shown as `text`.
std::string bdlDescriptionSection(std::string_view text);
std::string bdlDependencyEntry(const PackageDependency& dependency);
std::string bdlDependencySection(const std::vector<PackageDependency>& dependencies);

}  // namespace omniset::test
