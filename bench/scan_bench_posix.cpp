// Scanning a folder of 1,000 packages of 64 KB, beside programs that only read: the leading bytes
// of each file in one piece, which hold what a catalogue needs, or all of it. All of them list the
// folder first, and the files are in the system's cache.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "core/path.h"
#include "packages/package_catalogue.h"
#include "tests/fakes/temp_folder.h"
#include "tests/tools/bdl_sets.h"

namespace omniset {
namespace {

constexpr int kPackages = 1000;
// What the catalogue's buffered reader takes from the system at once.
constexpr std::size_t kLeadingBytes = 4096;
constexpr std::size_t kWholeFile = 1 << 20;

// Made once, on first use.
const std::string& folderOfPackages() {
  static const test::TempFolder folder;
  static const std::string path = [] {
    for (int i = 0; i < kPackages; ++i) {
      const test::BdlPackage package = test::manyPackage(i);
      folder.write(test::bdlFileName(package), test::buildBdl(package));
    }
    return folder.path();
  }();
  return path;
}

// Returns the number of bytes read, or -1.
ssize_t readPlainly(const std::string& path, std::vector<char>& buffer) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return -1;
  const ssize_t length = read(file, buffer.data(), buffer.size());
  close(file);
  return length;
}

// Returns the number of files that could be read.
int readFolder(const std::string& path, std::vector<char>& buffer) {
  int files = 0;
  DIR* folder = opendir(path.c_str());
  while (const dirent* entry = readdir(folder)) {
    if (!std::string_view(entry->d_name).ends_with(".bdl")) continue;
    if (readPlainly(joinPath(path, entry->d_name), buffer) > 0) ++files;
  }
  closedir(folder);
  return files;
}

void ScanPackages(benchmark::State& state) {
  const std::string& folder = folderOfPackages();
  NoPackageRows rows;
  NoStatusText status;
  for (auto _ : state) {
    PackageCatalogue catalogue(rows, status);
    catalogue.scan(folder);
    if (catalogue.count() != kPackages) state.SkipWithError("packages are missing");
  }
}
BENCHMARK(ScanPackages)->Unit(benchmark::kMillisecond);

void readPackages(benchmark::State& state, std::size_t bytes) {
  const std::string& folder = folderOfPackages();
  std::vector<char> buffer(bytes);
  for (auto _ : state) {
    if (readFolder(folder, buffer) != kPackages) state.SkipWithError("packages are missing");
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK_CAPTURE(readPackages, leading, kLeadingBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readPackages, whole, kWholeFile)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace omniset
