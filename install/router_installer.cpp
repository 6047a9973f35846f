#include "install/router_installer.h"

#include <algorithm>

#include "install/announcement.h"

namespace omniset {

namespace {

constexpr int kLockTimeoutMs = 10'000;
constexpr Micros kLongestWait = kSecond;
constexpr Micros kShortestWait = 1;
// An announcement that comes this long after the one from which an installation was started can
// only come from a target that has started over.
constexpr Micros kRestartAfter = 5 * kSecond;
// A target announces itself again every second, so that nothing is lost by dropping some; this
// keeps a flood from filling the memory.
constexpr std::size_t kMostAnnouncements = 4096;

MacAddress adapterAddress(NetworkInterfaces& interfaces, int adapter) {
  const std::vector<MacAddress> found = findInterfaces(interfaces);
  const auto index = static_cast<std::size_t>(adapter);
  return index < found.size() ? found[index] : found.back();
}

}  // namespace

RouterInstaller::RouterInstaller(int adapter, InstallerServices services)
    : clock_(services.clock),
      tempFiles_(services.tempFiles),
      endpoint_(adapterAddress(services.interfaces, adapter), nullptr, kInstallPort,
                std::move(services.socket)) {}

void RouterInstaller::run() {
  while (!stopEvent().wait(0)) step();
}

void RouterInstaller::step() {
  const Micros wait = runTimers();
  const int received = endpoint_.waitDatagram(receiveFrame_.bytes, wait);
  if (received >= 0) datagramReceived(static_cast<std::size_t>(received));
}

// Fires the timers that are due, in the order of the MAC addresses; returns how long to wait.
Micros RouterInstaller::runTimers() {
  const Micros now = clock_.now();
  const ScopedLock lock(mutex_, kLockTimeoutMs);
  deadlines_.collectDue(now, due_);
  std::sort(due_.begin(), due_.end());
  for (const MacAddress& mac : due_) {
    Entry& entry = sessions_.find(mac)->second;
    entry.session->timerFired(now);
    updateDeadline(entry);
  }
  const Micros nearest = deadlines_.nearest().value_or(now + kLongestWait);
  return std::clamp(nearest - now, kShortestWait, kLongestWait);
}

void RouterInstaller::datagramReceived(std::size_t received) {
  if (received < kFrameHeaderLength) return;
  const FrameHeader header = receiveFrame_.header();
  if (received - kFrameHeaderLength != header.payloadLength) return;
  if (header.source.isWildcard()) return;
  const Micros now = clock_.now();
  if (header.destination.isWildcard()) {
    announced(header.source, now);
    return;
  }
  const ScopedLock lock(mutex_, kLockTimeoutMs);
  const auto at = sessions_.find(header.source);
  if (at == sessions_.end()) return;
  at->second.session->frameReceived(receiveFrame_, received, now);
  updateDeadline(at->second);
}

void RouterInstaller::announced(const MacAddress& source, Micros now) {
  const auto announcement = parseAnnouncement(receiveFrame_.payloadText());
  if (!announcement) return;
  RouterRecord record;
  record.mac = source;
  record.label = announcement->label;
  record.lastSeen = now;
  const ScopedLock lock(mutex_, kLockTimeoutMs);
  const auto at = sessions_.find(source);
  if (at != sessions_.end() && now - at->second.session->record().lastSeen > kRestartAfter) {
    destroySession(at);
  }
  if (announcements_.size() < kMostAnnouncements) announcements_.push_back(std::move(record));
}

void RouterInstaller::updateDeadline(Entry& entry) {
  if (entry.deadline->first == entry.session->deadline()) return;
  entry.deadline = deadlines_.move(entry.deadline, entry.session->deadline());
}

void RouterInstaller::destroySession(Sessions::iterator at) {
  deadlines_.remove(at->second.deadline);
  sessions_.erase(at);
}

void RouterInstaller::Access::install(const RouterRecord& record,
                                      const std::string& packagesFolder) {
  RouterInstaller& i = installer_;
  cancel(record.mac);
  auto session = std::make_unique<RouterSession>(
      record, packagesFolder, SessionServices{i.endpoint_, i.sendFrame_, i.clock_, i.tempFiles_});
  const auto deadline = i.deadlines_.add(session->deadline(), record.mac);
  i.sessions_.emplace(record.mac, Entry{std::move(session), deadline});
}

bool RouterInstaller::Access::requestReboot(const MacAddress& mac) {
  const auto at = installer_.sessions_.find(mac);
  if (at == installer_.sessions_.end()) return false;
  at->second.session->requestReboot();
  return true;
}

bool RouterInstaller::Access::cancel(const MacAddress& mac) {
  const auto at = installer_.sessions_.find(mac);
  if (at == installer_.sessions_.end()) return false;
  installer_.destroySession(at);
  return true;
}

const RouterRecord* RouterInstaller::Access::record(const MacAddress& mac) const {
  const auto at = installer_.sessions_.find(mac);
  return at == installer_.sessions_.end() ? nullptr : &at->second.session->record();
}

std::optional<RouterRecord> RouterInstaller::Access::takeAnnouncement() {
  auto& queue = installer_.announcements_;
  if (queue.empty()) return std::nullopt;
  std::optional<RouterRecord> record(std::move(queue.front()));
  queue.pop_front();
  return record;
}

}  // namespace omniset
