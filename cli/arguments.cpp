#include "cli/arguments.h"

#include <algorithm>
#include <sstream>

#include "cli/argument_checks.h"
#include "cli/bad_input.h"
#include "cli/command_definitions.h"
#include "cli/exit_status.h"
#include "core/shown_text.h"

namespace omniset {

namespace {

const CLI::App* commandGiven(const Commands& commands) {
  for (const CLI::App* each : {commands.packages, commands.routers, commands.install, commands.boot,
                               commands.drives, commands.disk, commands.floppy}) {
    if (each->parsed()) return each;
  }
  return nullptr;
}

// An empty value, as an unset variable of a shell script leaves behind, is not meant; but a label
// may be.
void refuseEmptyValues(const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_name() == "--label") continue;
    const auto& values = option->results();
    if (std::find(values.begin(), values.end(), "") == values.end()) continue;
    throw BadInput(option->get_name() + " is empty: give it a value or leave it out.");
  }
}

Arguments checked(const Commands& commands, const WrittenArguments& written) {
  const CLI::App* command = commandGiven(commands);
  if (!command) {
    throw BadInput("Say what to do: packages, routers, install, boot, drives, disk or floppy.");
  }
  refuseEmptyValues(*command);
  if (command == commands.packages) return {checkedPackages(written), written.trace};
  if (command == commands.routers) return {checkedRouters(written), written.trace};
  if (command == commands.install) return {checkedInstall(written), written.trace};
  if (command == commands.boot) return {checkedBoot(written), written.trace};
  if (command == commands.drives) return {checkedDrives(written), written.trace};
  if (command == commands.disk) return {checkedDisk(written), written.trace};
  return {checkedFloppy(written), written.trace};
}

EarlyEnd complaint(const std::string& sentence, const CLI::App* command) {
  const std::string name = command ? "omniset-cli " + command->get_name() : "omniset-cli";
  return {"omniset-cli: " + sentence + "\nRun \"" + name + " --help\" for help.\n", kExitBadInput};
}

// The library knows help, the version and its own complaints apart by the exit code.
EarlyEnd endOf(const CLI::App& app, const CLI::ParseError& error, const CLI::App* command) {
  std::ostringstream text, unused;
  if (app.exit(error, text, unused) == 0) return {text.str(), kExitDone};
  std::string sentence = shownText(error.what());
  if (!sentence.ends_with('.')) sentence += '.';
  return complaint(sentence, command);
}

}  // namespace

std::variant<Arguments, EarlyEnd> parseArguments(const std::vector<std::string>& arguments) {
  WrittenArguments written;
  CLI::App app("Installs routers, over the network or from disks that it makes.", "omniset-cli");
  const Commands commands = defineCommands(app, written);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    return checked(commands, written);
  } catch (const CLI::ParseError& e) {
    return endOf(app, e, commandGiven(commands));
  } catch (const BadInput& e) {
    return complaint(e.what(), commandGiven(commands));
  }
}

}  // namespace omniset
