// The commands and their options, as the library for command lines wants them told.
#pragma once

#include <CLI/CLI.hpp>

#include "cli/written_arguments.h"

namespace omniset {

// Parsing `app` fills `written`, which outlives it. Returned are the commands, owned by `app`.
struct Commands {
  const CLI::App* packages;
  const CLI::App* routers;
  const CLI::App* install;
  const CLI::App* boot;
  const CLI::App* drives;
  const CLI::App* disk;
  const CLI::App* floppy;
};
Commands defineCommands(CLI::App& app, WrittenArguments& written);

}  // namespace omniset
