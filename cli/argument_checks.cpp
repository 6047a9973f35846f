#include "cli/argument_checks.h"

#include <string>

#include "cli/argument_values.h"
#include "cli/bad_input.h"
#include "media/floppy_maker.h"

namespace omniset {

namespace {

// PCs have to be switched on, and to get through their firmware and the boot.
constexpr Micros kWaitWithBoot = 600 * kSecond;

void checkSelection(const WrittenArguments& w, PackageChoice& options) {
  if (w.folder.empty()) throw BadInput("Say where the packages are: --packages FOLDER.");
  options.folder = w.folder;
  if (w.select.empty() && !w.selectAll) {
    throw BadInput("Say which packages to install: --select NAME[,NAME...] or --select-all.");
  }
  if (!w.select.empty() && w.selectAll) {
    throw BadInput(
        "--select-all already takes every package: leave --select out, or give only "
        "--select.");
  }
  options.select = w.select;
}

void checkRouters(const WrittenArguments& w, InstallOptions& options) {
  const int ways = int{!w.routers.empty()} + int{!w.first.empty()} + int{w.all};
  if (ways == 0) {
    throw BadInput("Say which routers to install: --router MAC[,MAC...], --first N or --all.");
  }
  if (ways > 1) throw BadInput("Give only one of --router, --first and --all.");
  if (!w.routers.empty()) {
    options.choice = RouterChoice::kNamed;
    for (const std::string& text : w.routers) options.routers.push_back(parseRouter(text));
  } else if (!w.first.empty()) {
    options.choice = RouterChoice::kFirst;
    options.count = static_cast<std::size_t>(parseCount("--first", "routers", w.first));
  } else {
    options.choice = RouterChoice::kAll;
  }
}

// What replaces the generated script makes pointless what would go into that.
void checkPointless(const WrittenArguments& w) {
  if (w.keepConfiguration && !w.script.empty()) {
    throw BadInput(
        "--keep-config keeps the router's configuration, so that --script would not be "
        "used: give one of the two.");
  }
  const char* replacing = w.keepConfiguration ? "--keep-config"
                          : !w.script.empty() ? "--script"
                                              : nullptr;
  const char* replaced = !w.address.empty()   ? "--address"
                         : !w.gateway.empty() ? "--gateway"
                                              : nullptr;
  if (replacing && replaced) {
    throw BadInput(std::string(replaced) + " would not be used with " + replacing +
                   ", which takes the place of the generated configuration: give one of the two.");
  }
  if (!w.gateway.empty() && w.address.empty()) {
    throw BadInput(
        "--gateway would not be used without an address: add --address A.B.C.D/LEN, or "
        "leave --gateway out.");
  }
}

void checkConfiguration(const WrittenArguments& w, InstallOptions& options) {
  checkPointless(w);
  if (!w.address.empty()) {
    const AddressWithLength given = parseAddress(w.address);
    options.address = given.address;
    options.netmaskLength = given.netmaskLength;
  }
  if (!w.gateway.empty()) options.gateway = parseGateway(w.gateway);
  options.baudGiven = !w.baud.empty();
  if (options.baudGiven) options.baudRate = parseBaudRate(w.baud);
  options.script = w.script;
  options.keepConfiguration = w.keepConfiguration;
}

}  // namespace

PackagesOptions checkedPackages(const WrittenArguments& w) {
  if (w.folder.empty()) {
    throw BadInput("Say which folder to list: omniset-cli packages FOLDER.");
  }
  return {w.folder, w.json};
}

RoutersOptions checkedRouters(const WrittenArguments& w) {
  RoutersOptions options;
  options.interfaceName = w.interfaceName;
  if (!w.seconds.empty()) {
    options.listen = parseCount("--seconds", "seconds", w.seconds) * kSecond;
  }
  options.json = w.json;
  return options;
}

InstallOptions checkedInstall(const WrittenArguments& w) {
  InstallOptions options;
  checkSelection(w, options);
  checkRouters(w, options);
  checkConfiguration(w, options);
  options.interfaceName = w.interfaceName;
  options.reboot = w.reboot;
  if (!w.boot.empty()) {
    options.bootAddress = parseClientAddress("--boot", w.boot);
    options.wait = kWaitWithBoot;
  }
  if (!w.wait.empty()) options.wait = parseCount("--wait", "seconds", w.wait) * kSecond;
  options.json = w.json;
  return options;
}

BootOptions checkedBoot(const WrittenArguments& w) {
  if (w.client.empty()) {
    throw BadInput("Say which address PCs get while they boot: --client A.B.C.D.");
  }
  return {parseClientAddress("--client", w.client), w.interfaceName, w.json};
}

DrivesOptions checkedDrives(const WrittenArguments& w) {
  return {w.json};
}

DiskOptions checkedDisk(const WrittenArguments& w) {
  if (w.device.empty()) {
    throw BadInput(
        "Say which disk to make: --device DEVICE. \"omniset-cli drives\" lists the drives "
        "that may be used.");
  }
  DiskOptions options;
  options.device = w.device;
  checkSelection(w, options);
  options.script = w.script;
  if (!w.baud.empty()) options.baudRate = parseBaudRate(w.baud);
  options.yes = w.yes;
  options.json = w.json;
  return options;
}

FloppyOptions checkedFloppy(const WrittenArguments& w) {
  if (w.device.empty()) throw BadInput("Say where the floppy is: --device DEVICE.");
  // As the window has it for a label that was cleared.
  return {w.device, w.label.empty() ? kNoLabel : w.label, w.yes, w.json};
}

}  // namespace omniset
