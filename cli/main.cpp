// omniset-cli: the installer for the command line.

#include <exception>
#include <iostream>

#include "boot/boot_images.h"
#include "cli/arguments.h"
#include "cli/bad_input.h"
#include "cli/boot_command.h"
#include "cli/console.h"
#include "cli/disk_command.h"
#include "cli/drives_command.h"
#include "cli/exit_status.h"
#include "cli/floppy_command.h"
#include "cli/install_command.h"
#include "cli/packages_command.h"
#include "cli/routers_command.h"
#include "cli/trace_output.h"
#include "core/shown_text.h"

namespace {

using namespace omniset;

int runCommand(const Arguments& arguments, const Console& console) {
  const TraceOutput trace(std::cerr, arguments.trace);
  if (const auto* packages = std::get_if<PackagesOptions>(&arguments.command)) {
    return runPackages(*packages, console);
  }
  if (const auto* routers = std::get_if<RoutersOptions>(&arguments.command)) {
    return runRouters(*routers, console);
  }
  if (const auto* boot = std::get_if<BootOptions>(&arguments.command)) {
    return runBoot(*boot, console, loadBootImage);
  }
  if (const auto* drives = std::get_if<DrivesOptions>(&arguments.command)) {
    return runDrives(*drives, console, *makeSystemVolumes());
  }
  if (const auto* disk = std::get_if<DiskOptions>(&arguments.command)) {
    return runDisk(*disk, arguments.trace, console, loadBootImage);
  }
  if (const auto* floppy = std::get_if<FloppyOptions>(&arguments.command)) {
    return runFloppy(*floppy, arguments.trace, console, loadBootImage);
  }
  return runInstall(std::get<InstallOptions>(arguments.command), arguments.trace, console,
                    loadBootImage);
}

int complain(const std::string& sentence, int exitCode) {
  std::cerr << "omniset-cli: " + sentence + "\n";
  return exitCode;
}

int runChecked(const Arguments& arguments, const Console& console) {
  try {
    return runCommand(arguments, console);
  } catch (const BadInput& e) {
    return complain(e.what(), kExitBadInput);
  } catch (const std::exception& e) {
    return complain(shownText(e.what()), kExitFailed);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const auto parsed = parseArguments({argv + (argc > 0 ? 1 : 0), argv + argc});
  int exitCode = 0;
  if (const auto* end = std::get_if<EarlyEnd>(&parsed)) {
    (end->exitCode == kExitDone ? std::cout : std::cerr) << end->text;
    exitCode = end->exitCode;
  } else {
    exitCode = runChecked(std::get<Arguments>(parsed), {std::cout, std::cerr});
  }
  if (!std::cout.flush() && exitCode == kExitDone) {
    return complain("The output could not be written in full.", kExitFailed);
  }
  return exitCode;
}
