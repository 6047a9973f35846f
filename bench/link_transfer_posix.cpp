#include "bench/link_transfer.h"

#include <sys/resource.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <thread>

#include "cli/adapter_choice.h"
#include "cli/installer_worker.h"
#include "core/error.h"
#include "link/network_interfaces.h"

namespace omniset::bench {

namespace {

using SteadyClock = std::chrono::steady_clock;
using Targets = std::map<MacAddress, RouterRecord>;

constexpr std::chrono::seconds kAnnouncementLimit(30);
constexpr std::chrono::minutes kInstallationLimit(10);
// Short beside the seconds of a transfer, long beside the microseconds of a frame.
constexpr std::chrono::milliseconds kLookInterval(5);

struct Look {
  SteadyClock::time_point time;
  std::int64_t bytesSent = 0;
  std::size_t waitingForReboot = 0;
};

Targets awaitTargets(RouterInstaller& installer, std::size_t count) {
  Targets targets;
  const auto limit = SteadyClock::now() + kAnnouncementLimit;
  while (targets.size() < count) {
    if (SteadyClock::now() > limit) throw Failure("Targets do not announce themselves.");
    {
      auto access = installer.access();
      while (auto record = access.takeAnnouncement()) targets[record->mac] = *record;
    }
    std::this_thread::sleep_for(kLookInterval);
  }
  return targets;
}

Look look(RouterInstaller& installer, const Targets& targets) {
  Look found;
  const auto access = installer.access();
  for (const auto& [mac, target] : targets) {
    const RouterRecord* record = access.record(mac);
    if (!record) throw Failure("A target has started over.");
    if (record->status == RouterStatus::kFailed) throw Failure(record->statusText);
    if (record->status == RouterStatus::kWaitingReboot) ++found.waitingForReboot;
    found.bytesSent += record->bytesSent;
  }
  found.time = SteadyClock::now();
  return found;
}

template <class Enough>
Look lookUntil(RouterInstaller& installer, const Targets& targets, Enough enough) {
  const auto limit = SteadyClock::now() + kInstallationLimit;
  for (;;) {
    const Look found = look(installer, targets);
    if (enough(found)) return found;
    if (SteadyClock::now() > limit) throw Failure("The installation does not end.");
    std::this_thread::sleep_for(kLookInterval);
  }
}

long peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

AdapterChoice chosen(const std::string& interfaceName) {
  return chooseAdapter(SystemNetworkInterfaces().list(), interfaceName);
}

}  // namespace

void awaitAnnouncement(const std::string& interfaceName) {
  InstallerWorker worker(chosen(interfaceName));
  awaitTargets(worker.installer(), 1);
}

TransferResult installTargets(const std::string& interfaceName, const std::string& packagesFolder,
                              const std::string& packageFile, std::size_t targets) {
  InstallerWorker worker(chosen(interfaceName));
  RouterInstaller& installer = worker.installer();
  Targets all = awaitTargets(installer, targets);
  {
    auto access = installer.access();
    for (auto& [mac, record] : all) {
      record.packageFiles = {packageFile};
      access.install(record, packagesFolder);
    }
  }
  const Look first =
      lookUntil(installer, all, [](const Look& found) { return found.bytesSent > 0; });
  const Look last = lookUntil(installer, all,
                              [&](const Look& found) { return found.waitingForReboot == targets; });
  const std::chrono::duration<double> taken = last.time - first.time;
  const auto bytes = static_cast<double>(last.bytesSent - first.bytesSent);
  return {bytes / taken.count() / 1e6, peakKilobytes()};
}

}  // namespace omniset::bench
