// The first and only program of the installer system: the target agent on the PC that is being
// installed. The kernel starts it from the RAM disk as /init; when it ends, the PC reboots.

#include <linux/magic.h>
#include <sys/mount.h>
#include <sys/random.h>
#include <sys/reboot.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include "core/clock.h"
#include "core/error.h"
#include "core/trace.h"
#include "payload/boot/boot_code.h"
#include "target/disk/disk_store.h"
#include "target/disk/disk_survey.h"
#include "target/local_installation.h"
#include "target/machine_facts.h"
#include "target/pc/linux_disks.h"
#include "target/pc/linux_network_cards.h"
#include "target/pc/system_files.h"
#include "target/pc/terminals.h"
#include "target/target_machine.h"
#include "target/terminal_lines.h"

namespace omniset {
namespace {

constexpr const char* kProduct = "Omniset " OMNISET_VERSION;
constexpr Micros kLookInterval = 200 * kMillisecond;
constexpr Micros kPauseBeforeReboot = 30 * kSecond;

// It partitions disks without asking: only as the first process of a system that runs from a RAM
// disk does it start.
bool isOnInstallerSystem() {
  struct statfs root {};
  return getpid() == 1 && statfs("/", &root) == 0 &&
         (root.f_type == RAMFS_MAGIC || root.f_type == TMPFS_MAGIC);
}

void mountKernelFolders() {
  mkdir("/proc", 0555);
  mkdir("/dev", 0755);
  mount("proc", "/proc", "proc", 0, nullptr);
  mount("devtmpfs", "/dev", "devtmpfs", 0, nullptr);
}

// Disks and volumes are told apart by it; the time will do where the kernel has no better number
// yet.
std::uint32_t drawNumber() {
  std::uint32_t number = 0;
  if (getrandom(&number, sizeof number, GRND_NONBLOCK) == sizeof number) return number;
  return static_cast<std::uint32_t>(SystemClock().now());
}

MachineFacts readFacts() {
  return {kProduct,
          describeMachine(readSystemFile("/proc/cpuinfo"), readSystemFile("/proc/meminfo")), ""};
}

// Tells what is on the disks, in the announcements too, while no installation uses them.
class SurveyBeside {
 public:
  SurveyBeside(TargetDisks& disks, TargetMachine& machine, TerminalLines& console)
      : disks_(disks), machine_(machine), console_(console) {}

  void step() {
    if (machine_.engaged()) {
      survey_.reset();
      isTold_ = false;
      return;
    }
    if (isTold_) return;
    if (!survey_) survey_.emplace(disks_);
    isTold_ = survey_->step();
    machine_.describeDisks(survey_->text());
    if (!isTold_) return;
    console_.say("Disks: " + survey_->text() + ".");
    survey_.reset();
  }

 private:
  TargetDisks& disks_;
  TargetMachine& machine_;
  TerminalLines& console_;
  std::optional<DiskSurvey> survey_;
  bool isTold_ = false;
};

void installOwnDisk(const std::string& commandLine, TerminalLines& console) {
  LinuxDisks disks;
  LocalInstallation(disks, console, {mbrBootCode, volumeBootCode}, drawNumber)
      .run(bootedVolumeNumber(commandLine), availableMemory(readSystemFile("/proc/meminfo")));
}

void runAgent(const Terminals& terminals, const Clock& clock, TerminalLines& console) {
  const MachineFacts facts = readFacts();
  console.say("This PC: " + facts.machine + ".");
  const std::string commandLine = readSystemFile("/proc/cmdline");
  if (installsOwnDisk(commandLine)) return installOwnDisk(commandLine, console);
  LinuxDisks disks;
  DiskStore store(
      disks, [&](const std::string& sentence) { console.say(sentence); },
      {mbrBootCode, volumeBootCode}, wasBootedFromMedium(commandLine), drawNumber);
  LinuxNetworkCards cards;
  TargetMachine machine(facts, cards, clock, store, console);
  if (!machine.hasCards()) throw Failure("No network card was found.");
  SurveyBeside survey(disks, machine, console);
  Micros nextLook = clock.now();
  while (!machine.mayReboot()) {
    machine.step();
    survey.step();
    if (clock.now() < nextLook) continue;
    nextLook = clock.now() + kLookInterval;
    if (terminals.keyPressed()) machine.keyPressed();
  }
}

// Until the pause is over, or a key is pressed that was not before.
void pauseBeforeReboot(const Terminals& terminals, const Clock& clock) {
  const Micros end = clock.now() + kPauseBeforeReboot;
  terminals.keyPressed();
  while (clock.now() < end && !terminals.keyPressed()) usleep(kLookInterval);
}

void runUntilReboot() {
  mountKernelFolders();
  const SystemClock clock;
  Terminals terminals;
  TerminalLines console([&](const std::string& text) { terminals.write(text); }, clock);
  setTraceSink(nullptr);
  try {
    console.say(std::string(kProduct) + " installer system");
    runAgent(terminals, clock, console);
  } catch (const std::exception& e) {
    console.say(std::string("The installer system cannot go on: ") + e.what());
    console.say("This PC starts again in " + std::to_string(kPauseBeforeReboot / kSecond) +
                " seconds; press a key to start it now.");
    pauseBeforeReboot(terminals, clock);
  }
}

}  // namespace
}  // namespace omniset

int main() {
  if (!omniset::isOnInstallerSystem()) {
    std::fprintf(stderr, "This program installs a PC, and starts only from the RAM disk.\n");
    return 1;
  }
  omniset::runUntilReboot();
  sync();
  reboot(RB_AUTOBOOT);
  return 1;
}
