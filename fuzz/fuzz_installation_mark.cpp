// Feeds any text to the reader of installation marks; what it takes must come back to the letter.
// Then the text is the mark of a disk that is inspected and installed anew, keeping its files: what
// does not belong to an installation stays.
#include <string>

#include "fuzz_disk.h"
#include "fuzz_input.h"
#include "target/disk/disk_inspection.h"
#include "target/disk/disk_store.h"

namespace {

using namespace omniset;
using fuzz::require;

void readText(std::string_view text) {
  const auto files = parseMark(text);
  if (!files) return;
  require(makeMark(*files) == text);
  require(files->size() <= kMostMarkedFiles);
  for (const MarkedFile& file : *files) require(isFileName(file.name));
}

// Most of what a fuzzer tries has a checksum that does not fit.
void readLines(std::string_view lines) {
  std::string text = "Omniset installation 1\n" + std::string(lines);
  if (!text.ends_with('\n')) text += '\n';
  readText(fuzz::checkedMark(text));
}

void installOver(const std::string& mark) {
  fuzz::InstalledDisk installed;
  installed.disk.putFile(fuzz::kPartitionAt, kMarkName, mark);
  fuzz::inspect(installed.disks, installed.disk);
  DiskStore store(
      installed.disks, [](const std::string&) {}, {}, false, [] { return 1u; });
  store.beginPreparation(true);
  const auto files = parseMark(mark);
  const bool isNamed = files && std::any_of(files->begin(), files->end(), [](const auto& file) {
                         return isSameFileName(file.name, "config.db");
                       });
  require(installed.disk.files(fuzz::kPartitionAt).count("config.db") == (isNamed ? 0 : 1));
  store.finish();
  require(fuzz::inspect(installed.disks, installed.disk) == Installation::kComplete);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(asText(std::span(data, size)));
  readText(text);
  readLines(text);
  installOver(text);
  installOver(fuzz::checkedMark("Omniset installation 1\n" + text));
  return 0;
}
