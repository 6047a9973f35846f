// Reads the command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "cli/options.h"

namespace omniset {

// What to do.
struct Arguments {
  std::variant<PackagesOptions, RoutersOptions, InstallOptions, BootOptions, DrivesOptions,
               DiskOptions, FloppyOptions>
      command;
  bool trace = false;
};

// What to print instead: help or the version on standard output (kExitDone), or what is wrong on
// standard error (kExitBadInput).
struct EarlyEnd {
  std::string text;  // with its line end
  int exitCode = 0;
};

// `arguments` without the program's name. Looks at no file.
std::variant<Arguments, EarlyEnd> parseArguments(const std::vector<std::string>& arguments);

}  // namespace omniset
