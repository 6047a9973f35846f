#include "packages/package_sections.h"

#include <algorithm>
#include <array>

namespace omniset {

void wantMetadata(GenericReader& reader) {
  reader.want(kPackageSection);
  reader.want(kDescriptionSection);
  reader.want(kDependencySection);
}

namespace {

bool nextIs(GenericReader& reader, std::uint16_t type) {
  return reader.nextSection() && reader.sectionType() == type;
}

template <std::size_t kWidth>
std::array<std::uint8_t, kWidth> readField(GenericReader& reader) {
  std::array<std::uint8_t, kWidth> bytes;
  reader.read(bytes.data(), bytes.size());
  return bytes;
}

}  // namespace

std::optional<PackageHeader> readPackageHeader(GenericReader& reader) {
  if (!nextIs(reader, kPackageSection)) return std::nullopt;
  const auto field = readField<kPackageHeaderWidth>(reader);
  ByteReader bytes(field);
  return parsePackageHeader(bytes);
}

// Only the text up to the first NUL counts, but the whole payload has to be there.
std::optional<std::string> readDescription(GenericReader& reader) {
  if (!nextIs(reader, kDescriptionSection)) return std::nullopt;
  std::string payload;
  bool ended = false;
  std::array<char, 4096> chunk;
  while (reader.unread() > 0) {
    const std::size_t step = std::min<std::size_t>(reader.unread(), chunk.size());
    reader.read(reinterpret_cast<std::uint8_t*>(chunk.data()), step);
    const std::string_view part(chunk.data(), step);
    if (!ended) payload.append(part.substr(0, part.find('\0')));
    ended = ended || part.find('\0') != std::string_view::npos;
  }
  return descriptionText(payload);
}

std::vector<PackageDependency> readDependencies(GenericReader& reader) {
  std::vector<PackageDependency> dependencies;
  if (!nextIs(reader, kDependencySection)) return dependencies;
  const auto countField = readField<kDependencyCountWidth>(reader);
  for (unsigned left = ByteReader(countField).u16le(); left > 0; --left) {
    const auto entry = readField<kDependencyEntryWidth>(reader);
    ByteReader bytes(entry);
    dependencies.push_back(parseDependency(bytes));
  }
  return dependencies;
}

}  // namespace omniset
