#include "cli/install_command.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "cli/adapter_choice.h"
#include "cli/boot_place.h"
#include "cli/count_text.h"
#include "cli/install_boot.h"
#include "cli/install_plan.h"
#include "cli/installer_worker.h"
#include "cli/json_lines.h"
#include "cli/package_folder.h"
#include "cli/progress_display.h"
#include "core/interrupt.h"

namespace omniset {

namespace {

constexpr std::chrono::milliseconds kPollInterval(100);

// Writes each router's result as the command's data.
class ResultLines : public InstallListener {
 public:
  explicit ResultLines(std::ostream& out) : out_(out) {}
  void routerSeen(const MacAddress&, const std::string&) override {}
  void statusChanged(const RouterState&) override {}
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override {
    out_ << resultLine(mac, ok, text) << std::endl;
  }

 private:
  std::ostream& out_;
};

// Told in the order in which they are added.
class Listeners : public InstallListener {
 public:
  void add(InstallListener& listener) { listeners_.push_back(&listener); }

  void routerSeen(const MacAddress& mac, const std::string& label) override {
    for (InstallListener* each : listeners_) each->routerSeen(mac, label);
  }
  void statusChanged(const RouterState& state) override {
    for (InstallListener* each : listeners_) each->statusChanged(state);
  }
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override {
    for (InstallListener* each : listeners_) each->routerDone(mac, ok, text);
  }

 private:
  std::vector<InstallListener*> listeners_;
};

std::unique_ptr<ProgressDisplay> makeDisplay(bool json, bool trace, std::ostream& err) {
  if (!mayRedraw(json, trace)) return std::make_unique<PlainProgress>(err);
  return std::make_unique<LiveProgress>(err, standardErrorTerminal, !isStandardOutputTerminal());
}

std::unique_ptr<InstallListener> makeData(bool json, std::ostream& out) {
  if (json) return std::make_unique<JsonEvents>(out);
  return std::make_unique<ResultLines>(out);
}

std::string routerCount(std::size_t count) {
  return countText(static_cast<std::int64_t>(count), "router");
}

std::string waitText(const InstallOptions& options) {
  return countText(options.wait / kSecond, "second");
}

std::string startSentence(const InstallOptions& options, const InstallPlan& plan,
                          const std::string& adapterName) {
  return "Installing " + plan.packages + " (" + sizeText(plan.run.totalBytes) +
         " for each router). Waiting up to " + waitText(options) + " for routers on " +
         adapterName + ".";
}

AdapterChoice chooseInstallAdapter(const InstallOptions& options) {
  const std::vector<NetworkInterface> adapters = SystemNetworkInterfaces().list();
  if (options.bootAddress == 0) return chooseAdapter(adapters, options.interfaceName);
  SystemLocalAddresses addresses;
  return chooseBootAdapter(adapters, options.interfaceName, options.bootAddress, addresses);
}

// `turn` is called in each turn, before the display's.
void drive(InstallRun& run, InstallerWorker& worker, ProgressDisplay& display,
           const std::function<void()>& turn) {
  for (;;) {
    if (InterruptGuard::requested()) {
      run.interrupt();
    } else if (worker.hasEnded()) {
      run.abandon(worker.reason());
    } else {
      run.poll();
    }
    turn();
    display.tick(worker.clock().now());
    if (run.done()) return;
    std::this_thread::sleep_for(kPollInterval);
  }
}

const char* whatToCheck(const InstallOptions& options, bool hasBooted) {
  if (hasBooted) return "Check what the screens of the PCs say that have asked to boot";
  return options.bootAddress != 0
             ? "Check that the PCs are set to boot from the network and are on the same network"
             : "Check that it has booted the installer and is on the same network";
}

}  // namespace

std::string summary(const InstallOptions& options, const InstallOutcome& outcome,
                    const std::string& adapterName, bool hasBooted) {
  if (outcome.started == 0 && !outcome.abandoned) {
    return "No router announced itself within " + waitText(options) + " on " + adapterName + ". " +
           whatToCheck(options, hasBooted) + ", or wait longer with --wait.";
  }
  std::string text = routerCount(outcome.succeeded) + " installed";
  if (outcome.failed > 0) text += ", " + std::to_string(outcome.failed) + " failed";
  if (outcome.abandoned) return text + "; the run ended early.";
  if (outcome.missing == 0) return text + ".";
  return text + ". " + routerCount(outcome.missing) + " did not appear within " +
         waitText(options) +
         ": check that all have booted the installer, or wait longer with "
         "--wait.";
}

int runInstall(const InstallOptions& options, bool trace, const Console& console,
               const BootImageSource& images) {
  PackageFolder folder(options.folder);
  warnOfUnreadable(folder, console.err);
  const InstallPlan plan = planInstallation(options, folder.catalogue());
  for (const std::string& warning : plan.warnings) console.err << warning + "\n";
  const AdapterChoice choice = chooseInstallAdapter(options);
  if (choice.isGuess) console.err << guessWarning(choice) + "\n";

  const InterruptGuard interrupt;
  InstallerWorker worker(choice);
  std::optional<InstallBoot> boot;
  if (options.bootAddress != 0) {
    boot.emplace(options, choice, images, worker.clock());
    console.err << bootSentence(choice, options.bootAddress) + " Power them on now.\n";
  }
  console.err << startSentence(options, plan, choice.shownName) << std::endl;
  const auto display = makeDisplay(options.json, trace, console.err);
  const auto data = makeData(options.json, console.out);
  // The display first: it clears the terminal for what the data writes.
  Listeners listeners;
  listeners.add(*display);
  listeners.add(*data);
  if (boot) listeners.add(boot->listener());
  InstallRun run(plan.run, worker.installer(), worker.clock(), listeners);
  drive(run, worker, *display, [&] {
    if (boot) boot->show(*display, console.out);
  });
  console.err << summary(options, run.outcome(), choice.shownName, boot && boot->hasAnswered())
              << std::endl;
  return exitCodeWithBoot(run.exitCode(), options.choice, boot && boot->hasFailed());
}

}  // namespace omniset
