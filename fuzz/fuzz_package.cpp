// Feeds any bytes to the package parser: as the catalogue reads a package, then as a plain walk
// over the sections of all images, with reads and skips of sizes that come from the bytes too.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <span>
#include <string>

#include "packages/package_sections.h"
#include "packages/version_text.h"
#include "tests/tools/memory_reader.h"

namespace {

using namespace omniset;

void require(bool holds) {
  if (!holds) std::abort();
}

void loadLikeTheCatalogue(std::span<const std::uint8_t> bytes) {
  test::MemoryReader reader(kPackageMagic, bytes);
  wantMetadata(reader);
  const auto header = readPackageHeader(reader);
  if (!header) return;
  require(header->name.size() <= kPackageNameWidth);
  require(*versionText(header->version) != '\0');
  const auto description = readDescription(reader);
  if (!description) return;
  require(description->size() < bytes.size());
  require(description->find('\n') == std::string::npos);
  const auto dependencies = readDependencies(reader);
  require(dependencies.size() * kDependencyEntryWidth < bytes.size());
}

void walkAllImages(std::span<const std::uint8_t> bytes) {
  test::MemoryReader reader(kPackageMagic, bytes);
  wantMetadata(reader);
  std::uint8_t buffer[64] = {};
  do {
    while (reader.nextSection()) {
      const std::size_t part = std::min<std::size_t>(reader.unread(), sizeof buffer);
      reader.read(buffer, part);
      reader.skip(std::min<std::size_t>(reader.unread(), buffer[0]));
      require(reader.unread() <= reader.sectionSize());
    }
    require(reader.sectionType() == 0);
  } while (reader.nextImage());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span bytes(data, size);
  for (const auto task : {loadLikeTheCatalogue, walkAllImages}) {
    try {
      task(bytes);
    } catch (const std::exception&) {
      // A malformed package is refused with an exception, whichever it is.
    }
  }
  return 0;
}
