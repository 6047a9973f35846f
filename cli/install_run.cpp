#include "cli/install_run.h"

#include <algorithm>
#include <stdexcept>

#include "cli/count_text.h"
#include "cli/exit_status.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr Micros kBytesInterval = kSecond / 5;
// More than a segment has; it bounds what a flood of invented routers can use up.
constexpr std::size_t kMostRouters = 4096;

std::string vanishedText(const RouterState& last) {
  if (last.status == RouterStatus::kWaitingReboot) {
    return "The router started over before it confirmed the reboot; everything had been sent";
  }
  return "Installation failed: the router started over before everything was sent";
}

}  // namespace

InstallRun::InstallRun(const InstallRunOptions& options, RouterInstaller& installer,
                       const Clock& clock, InstallListener& listener)
    : options_(options),
      installer_(installer),
      clock_(clock),
      listener_(listener),
      waitEnd_(clock.now() + options.wait),
      unseen_(options.named.begin(), options.named.end()) {}

// The installer's thread may hold the lock for long, when a disk is slow: then nothing is new in
// this turn.
void InstallRun::poll() {
  if (done_) return;
  try {
    takeTurn();
  } catch (const std::runtime_error& e) {
    traceLine(std::string("the installer is busy: ") + e.what());
  }
}

void InstallRun::takeTurn() {
  for (const RouterRecord& announced : takeAnnouncements()) {
    if (isWanted(announced.mac)) start(announced);
  }
  readStates();
  for (auto& [mac, router] : routers_) {
    if (!router.finished) follow(router);
  }
  if (!waitOver_ && clock_.now() >= waitEnd_) endWait();
  done_ = isComplete();
}

std::vector<RouterRecord> InstallRun::takeAnnouncements() {
  std::vector<RouterRecord> taken;
  RouterInstaller::Access access = installer_.access();
  while (auto record = access.takeAnnouncement()) taken.push_back(std::move(*record));
  return taken;
}

bool InstallRun::isWanted(const MacAddress& mac) const {
  if (waitOver_ || routers_.contains(mac)) return false;
  switch (options_.choice) {
    case RouterChoice::kNamed:
      return unseen_.contains(mac);
    case RouterChoice::kFirst:
      return routers_.size() < options_.count;
    case RouterChoice::kAll:
      return routers_.size() < kMostRouters;
  }
  return false;
}

void InstallRun::start(const RouterRecord& announced) {
  listener_.routerSeen(announced.mac, announced.label);
  unseen_.erase(announced.mac);
  ++outcome_.started;
  ++running_;
  Router& router = routers_[announced.mac];
  router.now.mac = announced.mac;
  router.now.label = announced.label;
  router.now.total = options_.totalBytes;
  if (const auto failure = install(announced)) finish(router, false, *failure);
}

// Returns what kept the installation from being started.
std::optional<std::string> InstallRun::install(const RouterRecord& announced) {
  RouterRecord request = options_.request;
  request.mac = announced.mac;
  request.label = announced.label;
  request.lastSeen = announced.lastSeen;
  try {
    installer_.access().install(request, options_.packagesFolder);
  } catch (const std::exception& e) {
    return std::string("Installation failed: ") + e.what();
  }
  return std::nullopt;
}

// All at once: the installer's thread waits for the lock meanwhile.
void InstallRun::readStates() {
  if (running_ == 0) return;
  RouterInstaller::Access access = installer_.access();
  for (auto& [mac, router] : routers_) {
    if (router.finished) continue;
    const RouterRecord* record = access.record(mac);
    router.hasSession = record != nullptr;
    if (!record) continue;
    router.now.status = record->status;
    router.now.text = record->statusText;
    router.now.bytes = std::min<std::int64_t>(record->bytesSent, router.now.total);
    if (record->status == RouterStatus::kWaitingReboot && options_.reboot &&
        !router.rebootRequested) {
      router.rebootRequested = access.requestReboot(mac);
    }
  }
}

void InstallRun::follow(Router& router) {
  if (!router.hasSession) {
    finish(router, false, vanishedText(router.now));
    return;
  }
  tellChange(router);
  switch (router.now.status) {
    case RouterStatus::kFailed:
      finish(router, false, router.now.text);
      return;
    case RouterStatus::kFinished:
      finish(router, true, router.now.text);
      return;
    case RouterStatus::kWaitingReboot:
      if (!options_.reboot) finish(router, true, router.now.text);
      return;
    case RouterStatus::kReady:
    case RouterStatus::kInstalling:
      return;
  }
}

void InstallRun::tellChange(Router& router) {
  const Micros now = clock_.now();
  const bool changed =
      router.now.status != router.told.status || router.now.text != router.told.text;
  const bool moved = router.now.bytes != router.told.bytes && now - router.toldAt >= kBytesInterval;
  if (!changed && !moved) return;
  router.told = router.now;
  router.toldAt = now;
  listener_.statusChanged(router.now);
}

void InstallRun::finish(Router& router, bool ok, const std::string& text) {
  router.finished = true;
  --running_;
  ++(ok ? outcome_.succeeded : outcome_.failed);
  listener_.routerDone(router.now.mac, ok, text);
}

void InstallRun::failUnseen(const std::string& text) {
  for (const MacAddress& mac : unseen_) {
    ++outcome_.failed;
    ++outcome_.missing;
    listener_.routerDone(mac, false, text);
  }
  unseen_.clear();
}

void InstallRun::endWait() {
  waitOver_ = true;
  if (options_.choice == RouterChoice::kFirst) outcome_.missing = options_.count - routers_.size();
  failUnseen("did not announce itself within " + countText(options_.wait / kSecond, "second"));
}

bool InstallRun::isComplete() const {
  if (running_ > 0) return false;
  if (waitOver_) return true;
  switch (options_.choice) {
    case RouterChoice::kNamed:
      return unseen_.empty();
    case RouterChoice::kFirst:
      return routers_.size() == options_.count;
    case RouterChoice::kAll:
      return false;
  }
  return false;
}

// A session that cannot be reached goes with the installer.
void InstallRun::cancelSessions() {
  try {
    RouterInstaller::Access access = installer_.access();
    for (const auto& [mac, router] : routers_) {
      if (!router.finished) access.cancel(mac);
    }
  } catch (const std::runtime_error& e) {
    traceLine(std::string("the installer is busy: ") + e.what());
  }
}

void InstallRun::abandon(const std::string& reason) {
  if (done_) return;
  done_ = true;
  outcome_.abandoned = true;
  cancelSessions();
  for (auto& [mac, router] : routers_) {
    if (!router.finished) finish(router, false, reason);
  }
  failUnseen(reason);
}

int InstallRun::exitCode() const {
  if (outcome_.abandoned) return kExitFailed;
  if (outcome_.started == 0) return kExitNoRouter;
  return outcome_.failed > 0 || outcome_.missing > 0 ? kExitFailed : kExitDone;
}

}  // namespace omniset
