// The boot configuration: which kernel is started with which RAM disk and command line. A text of
// lines with a keyword each, as docs/network-boot.md describes it.
#pragma once

#include <array>
#include <string_view>

namespace omniset::loader {

// With a final zero. Names have room in a boot ROM's parameters, command lines in a kernel's.
using FileName = std::array<char, 128>;
using CommandLine = std::array<char, 2048>;

struct BootConfiguration {
  FileName kernel{};
  CommandLine commandLine{};  // may be empty
  FileName ramDisk{};         // empty: there is none
};

enum class ConfigurationFault { kNone, kNoKernel, kLongName, kLongCommandLine };

// Of several systems the first counts.
ConfigurationFault readConfiguration(std::string_view text, BootConfiguration& configuration);

}  // namespace omniset::loader
