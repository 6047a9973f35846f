// Feeds any bytes to the splitter of stored lists of strings.
#include <string>

#include "fuzz_input.h"
#include "ui/string_list.h"

namespace {

using namespace omniset;
using fuzz::require;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> strings = splitStrings(std::span(data, size));
  std::size_t total = 0;
  for (const std::string& string : strings) {
    require(!string.empty() && string.find('\0') == std::string::npos);
    total += string.size() + 1;
  }
  require(total <= size + 1);
  require(splitStrings(packedStrings(strings)) == strings);
  return 0;
}
