// Feeds any text to the loaders' reader of boot configurations. What it takes has no character that
// could not be shown, and says the same when it is written anew.
#include <string>

#include "fuzz_input.h"
#include "payload/loader/common/configuration.h"

namespace {

using namespace omniset;
using namespace omniset::loader;
using fuzz::require;

// Ends with a zero within its room; nothing but text before it.
template <typename Text>
std::string textOf(const Text& text) {
  const auto end = std::find(text.begin(), text.end(), '\0');
  require(end != text.end());
  require(std::none_of(text.begin(), end, [](char c) { return c >= 0 && c < ' '; }));
  return {text.begin(), end};
}

bool isWord(const std::string& text) {
  return text.find(' ') == std::string::npos;
}

void readAgain(const std::string& kernel, const std::string& commandLine,
               const std::string& ramDisk) {
  BootConfiguration again;
  const std::string text = "KERNEL " + kernel + "\r\nappend " + commandLine;
  require(readConfiguration(text, again) == ConfigurationFault::kNone);
  require(textOf(again.kernel) == kernel);
  require(textOf(again.commandLine) == commandLine);
  require(textOf(again.ramDisk) == ramDisk);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  BootConfiguration configuration;
  const auto fault = readConfiguration(asText(std::span(data, size)), configuration);
  if (fault != ConfigurationFault::kNone) return 0;
  const std::string kernel = textOf(configuration.kernel);
  const std::string commandLine = textOf(configuration.commandLine);
  const std::string ramDisk = textOf(configuration.ramDisk);
  require(!kernel.empty() && isWord(kernel) && isWord(ramDisk));
  require(ramDisk.empty() || commandLine.find("=" + ramDisk) != std::string::npos);
  readAgain(kernel, commandLine, ramDisk);
  return 0;
}
