#include "cli/command_definitions.h"

#include <memory>

namespace omniset {

namespace {

constexpr const char* kPackagesExample =
    "Example:\n"
    "  omniset-cli packages ~/packages\n"
    "\n"
    "--json writes an object per package and line, with the keys name, version, file,\n"
    "size, description, dependencies and missing.\n"
    "Exit status: 0 packages were listed, 2 the folder cannot be read or has none.";

constexpr const char* kRoutersExample =
    "Example:\n"
    "  omniset-cli routers --interface eth1 --seconds 10\n"
    "\n"
    "--json writes an object per router and line, with the keys mac and label.\n"
    "Exit status: 0 routers were found, 1 the network failed, 2 bad arguments,\n"
    "3 no router was found.";

constexpr const char* kInstallExample =
    "Examples:\n"
    "  omniset-cli install --packages ~/packages --select system,routing --first 1 \\\n"
    "      --address 192.168.88.1/24 --gateway 192.168.88.254 --reboot\n"
    "  omniset-cli install --packages ~/packages --select-all --all --wait 120 --json\n"
    "  omniset-cli install --packages ~/packages --select-all --first 2 \\\n"
    "      --boot 192.168.88.20 --reboot\n"
    "\n"
    "With --boot, power the PCs on and walk away: they boot over the network, one\n"
    "after the other, and are installed. What was installed is not booted again, so\n"
    "that a PC whose firmware tries the network first starts from its disk.\n"
    "\n"
    "--json writes an object per event and line: \"router\" when a router is found,\n"
    "\"status\" on each change, \"result\" last for each router; with --boot also \"boot\"\n"
    "for each step of a PC that boots, as \"boot --help\" tells, and \"refused\" with a\n"
    "text for one that is not to boot.\n"
    "Exit status: 0 every router was installed, 1 at least one was not, 2 bad\n"
    "arguments or packages, 3 no router announced itself in time.";

constexpr const char* kBootExample =
    "Example:\n"
    "  omniset-cli boot --client 192.168.88.20 --interface eth1\n"
    "\n"
    "PCs get the address while they boot, one after the other, so that one is enough\n"
    "for all. It has to be free, and on the subnet of this computer's adapter. Let no\n"
    "DHCP server be on that network. Where the UDP ports 67 and 69 are reserved for\n"
    "the administrator, start as root.\n"
    "\n"
    "--json writes an object per step of a boot and line, with the keys event, step,\n"
    "mac, and by the step: \"answered\" address; \"requested\" image, name, file;\n"
    "\"sent\" image, name, bytes; \"gave-up\" image, name, requested; \"done\".\n"
    "Exit status: 0 it was ended by Ctrl-C, 1 the network failed, 2 bad arguments, or\n"
    "none that fit this computer's network.";

constexpr const char* kDrivesExample =
    "Examples:\n"
    "  omniset-cli drives\n"
    "  omniset-cli drives --json\n"
    "\n"
    "The drive that the system runs from and drive A are never listed.\n"
    "\n"
    "--json writes an object per drive and line, with the keys drive, media, size,\n"
    "label, contents and obstacle: why it cannot be used, or empty.\n"
    "Exit status: 0, also when there is none; 1 the drives cannot be told.";

constexpr const char* kDiskExample =
    "Examples:\n"
    "  omniset-cli disk --device /dev/sdb --packages ~/packages --select-all\n"
    "  omniset-cli disk --device /dev/sdb --packages ~/packages --select system \\\n"
    "      --script first-start.rsc --baud 115200 --yes\n"
    "  truncate -s 64M disk.img\n"
    "  omniset-cli disk --device disk.img --packages ~/packages --select-all --yes\n"
    "\n"
    "Everything on the device is erased. Without --yes it is only told what would be\n"
    "erased and written. What was written is read back and compared.\n"
    "\n"
    "--json writes an object per event and line: \"status\" on each change, \"result\"\n"
    "last.\n"
    "Exit status: 0 the disk is ready, 1 it failed or was interrupted, 2 bad\n"
    "arguments, packages or device, or --yes was not given: nothing was written.";

constexpr const char* kFloppyExample =
    "Examples:\n"
    "  omniset-cli floppy --device /dev/fd0 --yes\n"
    "  omniset-cli floppy --device floppy.img --label lab --yes\n"
    "\n"
    "Everything on the floppy is erased. Without --yes it is only told what would be\n"
    "erased. An image file that does not exist is created. What was written is read\n"
    "back and compared.\n"
    "\n"
    "--json writes an object per event and line: \"status\" on each change, \"result\"\n"
    "last.\n"
    "Exit status: 0 the floppy is ready, 1 it failed or was interrupted, 2 bad\n"
    "arguments or device, or --yes was not given: nothing was written.";

constexpr std::size_t kHelpColumn = 30;

// The library's own adds "..." to lists and names parts of the usage that nobody has to know.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(kHelpColumn); }

  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string type = option->get_type_name();
    return type.empty() ? "" : " " + type;
  }

  std::string make_usage(const CLI::App* app, std::string name) const override {
    std::string usage = "\nUsage: " + name + " [OPTIONS]";
    if (!app->get_subcommands({}).empty()) usage += " COMMAND";
    for (const CLI::Option* option : app->get_options()) {
      if (option->get_positional()) usage += " " + option->get_name(true);
    }
    return usage + "\n";
  }
};

void addCommon(CLI::App& command, WrittenArguments& w) {
  command.add_flag("--json", w.json, "Write JSON to standard output");
  command.add_flag("--trace", w.trace, "Write diagnostic lines to standard error");
}

void addList(CLI::App& command, const char* name, std::vector<std::string>& values,
             const char* typeName, const char* help) {
  command.add_option(name, values, help)
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name(typeName);
}

void addText(CLI::App& command, const char* name, std::string& value, const char* typeName,
             const char* help) {
  command.add_option(name, value, help)->type_name(typeName);
}

void addInterface(CLI::App& command, WrittenArguments& w) {
  addText(command, "--interface", w.interfaceName, "IF",
          "Network adapter on which the routers are, by\n"
          "name; where adapters have no names by number\n"
          "or MAC address. Without it the first one");
}

CLI::App* addPackages(CLI::App& app, WrittenArguments& w) {
  CLI::App* command = app.add_subcommand("packages", "List the packages of a folder");
  addText(*command, "FOLDER", w.folder, "", "Folder with .bdl files");
  addCommon(*command, w);
  command->footer(kPackagesExample);
  return command;
}

CLI::App* addRouters(CLI::App& app, WrittenArguments& w) {
  CLI::App* command = app.add_subcommand("routers", "List the routers that wait for an installer");
  addInterface(*command, w);
  addText(*command, "--seconds", w.seconds, "N", "How long to listen [5]");
  addCommon(*command, w);
  command->footer(kRoutersExample);
  return command;
}

void addSelection(CLI::App& command, WrittenArguments& w) {
  addText(command, "--packages", w.folder, "FOLDER", "Folder with .bdl files");
  addList(command, "--select", w.select, "NAME[,NAME...]",
          "Install these packages, by package or file\n"
          "name, of several versions the newest, and\n"
          "what they depend on");
  command.add_flag("--select-all", w.selectAll, "Install every package of the folder");
}

void addWhatAndWhere(CLI::App& command, WrittenArguments& w) {
  addSelection(command, w);
  addList(command, "--router", w.routers, "MAC[,MAC...]", "Install these routers");
  addText(command, "--first", w.first, "N", "Install the first N that announce themselves");
  command.add_flag("--all", w.all, "Install all that announce themselves in time");
  addInterface(command, w);
}

void addConfiguration(CLI::App& command, WrittenArguments& w) {
  addText(command, "--address", w.address, "A.B.C.D/LEN",
          "Address and netmask length of the router");
  addText(command, "--gateway", w.gateway, "A.B.C.D", "Default gateway, with --address");
  addText(command, "--baud", w.baud, "N", "Speed of the serial ports, with --address\n[9600]");
  addText(command, "--script", w.script, "FILE",
          "Script for the first start, in place of the\n"
          "one that --address makes");
  command.add_flag("--keep-config", w.keepConfiguration, "Keep the router's configuration");
}

CLI::App* addInstall(CLI::App& app, WrittenArguments& w) {
  CLI::App* command = app.add_subcommand("install", "Install routers, all at once");
  addWhatAndWhere(*command, w);
  addConfiguration(*command, w);
  command->add_flag("--reboot", w.reboot, "Reboot each router when it is installed");
  addText(*command, "--boot", w.boot, "A.B.C.D",
          "Boot PCs over the network too; each gets this\naddress while it boots");
  addText(*command, "--wait", w.wait, "SECONDS",
          "How long routers may take to announce\nthemselves [60, with --boot 600]");
  addCommon(*command, w);
  command->footer(kInstallExample);
  return command;
}

CLI::App* addBoot(CLI::App& app, WrittenArguments& w) {
  CLI::App* command = app.add_subcommand("boot", "Boot PCs over the network, until Ctrl-C");
  addText(*command, "--client", w.client, "A.B.C.D", "Address that each PC gets while it boots");
  addText(*command, "--interface", w.interfaceName, "IF",
          "Network adapter on which the PCs are, by name.\n"
          "Without it that on whose subnet the address is;\n"
          "on Windows the system chooses it");
  addCommon(*command, w);
  command->footer(kBootExample);
  return command;
}

CLI::App* addDrives(CLI::App& app, WrittenArguments& w) {
  CLI::App* command = app.add_subcommand("drives", "List the drives that disks can be made of");
  addCommon(*command, w);
  command->footer(kDrivesExample);
  return command;
}

void addYes(CLI::App& command, WrittenArguments& w) {
  command.add_flag("--yes", w.yes, "Erase the device and write it");
}

CLI::App* addDisk(CLI::App& app, WrittenArguments& w) {
  CLI::App* command =
      app.add_subcommand("disk", "Make a disk that installs the router it is put into");
  addText(*command, "--device", w.device, "DEVICE",
          "Disk or image file to write; on Windows a drive,\nsuch as E:");
  addSelection(*command, w);
  addText(*command, "--script", w.script, "FILE", "Script for the router's first start");
  addText(*command, "--baud", w.baud, "N",
          "Speed of the serial ports, set by the script;\nwithout it they stay as they are");
  addYes(*command, w);
  addCommon(*command, w);
  command->footer(kDiskExample);
  return command;
}

CLI::App* addFloppy(CLI::App& app, WrittenArguments& w) {
  CLI::App* command =
      app.add_subcommand("floppy", "Make a floppy for PCs that cannot boot over the network");
  addText(*command, "--device", w.device, "DEVICE",
          "Floppy drive or image file to write; on Windows\nthe drive A:");
  addText(*command, "--label", w.label, "TEXT", "Text of the floppy's file label.txt [veltrona]");
  addYes(*command, w);
  addCommon(*command, w);
  command->footer(kFloppyExample);
  return command;
}

}  // namespace

Commands defineCommands(CLI::App& app, WrittenArguments& written) {
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("--version", "omniset-cli " OMNISET_VERSION, "Show the version");
  app.require_subcommand(0, 1);
  app.footer("\"omniset-cli COMMAND --help\" tells a command's options, with an example.");
  return {addPackages(app, written), addRouters(app, written), addInstall(app, written),
          addBoot(app, written),     addDrives(app, written),  addDisk(app, written),
          addFloppy(app, written)};
}

}  // namespace omniset
