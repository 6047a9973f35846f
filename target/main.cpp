// omniset-target: the target agent as an ordinary program. It plays one or more PCs that have
// booted the installer system, and stores what it is sent in a folder.

#include <sys/utsname.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/error.h"
#include "core/interrupt.h"
#include "core/shown_text.h"
#include "core/trace.h"
#include "link/network_interfaces.h"
#include "target/folder_store.h"
#include "target/keyboard.h"
#include "target/target_host.h"

namespace omniset {
namespace {

constexpr Micros kLookInterval = 200 * kMillisecond;
constexpr int kMostTargets = 4096;
constexpr int kNotInstalled = 1;
constexpr int kBadArguments = 2;

struct Options {
  std::string interface;
  std::string label = "omniset-target";
  std::string store;
  int count = 1;
};

class StandardOutputConsole : public TargetConsole {
 public:
  void say(const MacAddress& target, const std::string& sentence) override {
    std::printf("%s  %s\n", target.text().c_str(), shownText(sentence).c_str());
    std::fflush(stdout);
  }
};

NetworkInterface chooseInterface(const std::string& name) {
  SystemNetworkInterfaces system;
  for (const NetworkInterface& found : system.list()) {
    if (name.empty() || found.name == name) return found;
  }
  if (name.empty()) throw Failure("No network interface is up. Bring one up, or name one.");
  throw Failure("No network interface \"" + name + "\" is up. See: ip link");
}

// The interface's own address for the first target, locally administered ones for the others.
MacAddress addressOf(MacAddress mac, int index) {
  if (index == 0) return mac;
  mac.bytes[0] = 0x06;
  mac.bytes[1] = static_cast<std::uint8_t>(index >> 8);
  mac.bytes[2] = static_cast<std::uint8_t>(index);
  return mac;
}

// Several targets are numbered, so that an operator can tell them apart.
std::string labelOf(const Options& options, int index) {
  return options.count == 1 ? options.label : options.label + " " + std::to_string(index + 1);
}

std::string folderOf(const Options& options, const MacAddress& mac) {
  if (options.count == 1) return options.store;
  std::string name = mac.text();
  for (char& c : name) {
    if (c == ':') c = '-';
  }
  return options.store + "/" + name;
}

std::string describeMachine() {
  utsname system{};
  uname(&system);
  return std::string(system.sysname) + " " + system.machine;
}

// Until all targets have rebooted, or somebody asks the program to end: false then.
bool runLoop(TargetHost& host, const Clock& clock, Keyboard& keyboard) {
  Micros nextLook = clock.now();
  while (!InterruptGuard::requested()) {
    host.step(kLookInterval);
    if (clock.now() < nextLook) continue;
    nextLook = clock.now() + kLookInterval;
    if (keyboard.pressed()) host.keyPressed();
    if (host.allEnded()) return true;
  }
  return false;
}

// False when the targets did not get to their reboot.
bool runTargets(const Options& options) {
  const NetworkInterface interface = chooseInterface(options.interface);
  const SystemClock clock;
  StandardOutputConsole console;
  const InterruptGuard guard;
  Keyboard keyboard;
  BroadcastEndpoint endpoint(interface.mac, nullptr, kInstallPort, makeUdpSocket(interface.name));
  std::vector<std::unique_ptr<FolderStore>> stores;
  TargetHost host(endpoint, clock);
  for (int i = 0; i < options.count; ++i) {
    const MacAddress mac = addressOf(interface.mac, i);
    stores.push_back(std::make_unique<FolderStore>(folderOf(options, mac)));
    stores.back()->claim();
    host.add({mac, labelOf(options, i), describeMachine(), "folder " + stores.back()->path()},
             *stores.back(), console);
    console.say(mac, "Announcing on " + interface.name + ".");
  }
  return runLoop(host, clock, keyboard);
}

void addOptions(CLI::App& app, Options& options) {
  app.add_option("--interface", options.interface,
                 "Network interface (default: the first that is up)");
  app.add_option("--label", options.label,
                 "Label shown in the installer's router list; numbered with --count")
      ->check([](const std::string& label) {
        const bool good = label.size() <= 200 && label.find('\n') == std::string::npos;
        return good ? std::string() : std::string("a label is one line of at most 200 characters");
      });
  app.add_option("--store", options.store, "Folder for the received files: a new or an empty one")
      ->required();
  app.add_option("--count", options.count, "Number of targets, each with a MAC address of its own")
      ->check(CLI::Range(1, kMostTargets));
}

int runProgram(int argc, char** argv) {
  Options options;
  CLI::App app(
      "Plays a PC that has booted the installer system: announces itself, takes an installation\n"
      "and stores the files. A key pressed at the end reboots it, that is, ends the program.\n"
      "Example: omniset-target --interface eth1 --store received");
  addOptions(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : kBadArguments;
  }
  setTraceSink(nullptr);
  try {
    return runTargets(options) ? 0 : kNotInstalled;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "omniset-target: %s\n", e.what());
    return kNotInstalled;
  }
}

}  // namespace
}  // namespace omniset

int main(int argc, char** argv) {
  return omniset::runProgram(argc, argv);
}
