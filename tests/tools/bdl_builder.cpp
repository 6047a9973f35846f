#include "tests/tools/bdl_builder.h"

#include <charconv>

namespace omniset::test {

namespace {

// Mixes the bits of a counter (a splitmix generator): cheap, the same everywhere, and no two
// packages alike.
std::string payloadBytes(std::size_t count, std::uint64_t seed) {
  std::string bytes(count, '\0');
  std::uint64_t counter = seed;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (i % 8 == 0) {
      counter += 0x9E3779B97F4A7C15;
      bits = (counter ^ counter >> 30) * 0xBF58476D1CE4E5B9;
      bits = (bits ^ bits >> 27) * 0x94D049BB133111EB;
      bits ^= bits >> 31;
    }
    bytes[i] = static_cast<char>(bits & 0xFF);
    bits >>= 8;
  }
  return bytes;
}

// Takes a number of at most 255 off the front.
std::optional<unsigned> takeNumber(std::string_view& text) {
  std::uint8_t value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (fault != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

bool takeWord(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

// What stands between the minor version and the build number says the kind.
char takeKind(std::string_view& text, char otherwise) {
  if (takeWord(text, "alpha")) return 'a';
  if (takeWord(text, "beta")) return 'b';
  if (takeWord(text, "rc")) return 'c';
  return otherwise;
}

}  // namespace

std::optional<std::uint32_t> parseVersion(std::string_view text, char kind) {
  if (text == "any") return 0;
  const auto major = takeNumber(text);
  if (!major || !takeWord(text, ".")) return std::nullopt;
  const auto minor = takeNumber(text);
  if (!minor) return std::nullopt;
  if (text.empty()) return versionWord(*major, *minor, 0, kind);
  if (!takeWord(text, ".")) {
    const char named = takeKind(text, '\0');
    if (named == '\0') return std::nullopt;
    if (text.empty()) return versionWord(*major, *minor, 0, named);
    kind = named;
  }
  const auto build = takeNumber(text);
  if (!build || !text.empty()) return std::nullopt;
  return versionWord(*major, *minor, *build, kind);
}

std::string buildBdl(const BdlPackage& package) {
  std::string sections = bdlPackageSection(package.name, package.version);
  sections += bdlDescriptionSection(package.description);
  if (!package.dependencies.empty()) sections += bdlDependencySection(package.dependencies);
  if (package.payloadBytes > 0) {
    sections += bdlSection(kPayloadSection, payloadBytes(package.payloadBytes, package.seed));
  }
  return bdlFile(sections);
}

std::string littleEndian16(std::uint16_t value) {
  std::uint8_t bytes[2];
  ByteWriter(bytes).u16le(value);
  return std::string(asText(bytes));
}

std::string littleEndian32(std::uint32_t value) {
  std::uint8_t bytes[4];
  ByteWriter(bytes).u32le(value);
  return std::string(asText(bytes));
}

std::string padded(std::string_view bytes, std::size_t width) {
  std::string field(bytes);
  field.resize(width, '\0');
  return field;
}

std::string bdlFile(std::string_view sections) {
  return bdlFile(sections, static_cast<std::uint32_t>(sections.size()));
}

std::string bdlFile(std::string_view sections, std::uint32_t length) {
  return littleEndian32(kPackageMagic) + littleEndian32(length) + std::string(sections);
}

std::string bdlSection(std::uint16_t type, std::string_view payload) {
  return bdlSection(type, payload, static_cast<std::uint32_t>(payload.size()));
}

std::string bdlSection(std::uint16_t type, std::string_view payload, std::uint32_t size) {
  return littleEndian16(type) + littleEndian32(size) + std::string(payload);
}

std::string bdlPackageSection(std::string_view name, std::uint32_t version) {
  const std::string fields = padded(name, kPackageNameWidth) + littleEndian32(version);
  return bdlSection(kPackageSection, padded(fields, kPackageHeaderWidth));
}

std::string bdlDescriptionSection(std::string_view text) {
  return bdlSection(kDescriptionSection, "\"" + std::string(text) + "\"\n\n");
}

std::string bdlDependencyEntry(const PackageDependency& dependency) {
  return padded(dependency.name, kPackageNameWidth) + littleEndian32(dependency.minVersion) +
         littleEndian32(0) + littleEndian32(dependency.maxVersion) + littleEndian32(0);
}

std::string bdlDependencySection(const std::vector<PackageDependency>& dependencies) {
  std::string payload = littleEndian16(static_cast<std::uint16_t>(dependencies.size()));
  for (const PackageDependency& each : dependencies) payload += bdlDependencyEntry(each);
  return bdlSection(kDependencySection, payload);
}

}  // namespace omniset::test
