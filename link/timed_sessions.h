// The sessions of one event loop, found by their target's MAC address, each with a deadline at
// which its timer fires. A Session has `Micros deadline() const` and `void timerFired(Micros now)`.
// No lock: the owner has one where more than one thread comes here.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "core/clock.h"
#include "core/mac_address.h"
#include "link/deadline_index.h"

namespace omniset {

template <class Session>
class TimedSessions {
 public:
  // In place of an earlier session of that target.
  void add(const MacAddress& mac, std::unique_ptr<Session> session) {
    remove(mac);
    const auto deadline = deadlines_.add(session->deadline(), mac);
    sessions_.emplace(mac, Entry{std::move(session), deadline});
  }

  // False when there is none.
  bool remove(const MacAddress& mac) {
    const auto at = sessions_.find(mac);
    if (at == sessions_.end()) return false;
    deadlines_.remove(at->second.deadline);
    sessions_.erase(at);
    return true;
  }

  // Null when there is none. Its deadline must not change through this pointer: see with().
  Session* find(const MacAddress& mac) const {
    const auto at = sessions_.find(mac);
    return at == sessions_.end() ? nullptr : at->second.session.get();
  }

  // Calls `use` with the session, whose deadline may change; false when there is none.
  template <class Use>
  bool with(const MacAddress& mac, Use&& use) {
    const auto at = sessions_.find(mac);
    if (at == sessions_.end()) return false;
    use(*at->second.session);
    updateDeadline(at->second);
    return true;
  }

  // Fires the timers that are due, in the order of the MAC addresses, each once.
  void fireDue(Micros now) {
    deadlines_.collectDue(now, due_);
    std::sort(due_.begin(), due_.end());
    for (const MacAddress& mac : due_) {
      with(mac, [now](Session& session) { session.timerFired(now); });
    }
  }

  // How long to wait for the nearest deadline: at least a microsecond, at most `longest`.
  Micros timeToNext(Micros now, Micros longest) const {
    const Micros nearest = deadlines_.nearest().value_or(now + longest);
    return std::clamp(nearest - now, Micros{1}, longest);
  }

  template <class Use>
  void forEach(Use&& use) {
    for (auto& [mac, entry] : sessions_) {
      use(*entry.session);
      updateDeadline(entry);
    }
  }

 private:
  struct Entry {
    std::unique_ptr<Session> session;
    DeadlineIndex<MacAddress>::Handle deadline;
  };

  void updateDeadline(Entry& entry) {
    if (entry.deadline->first == entry.session->deadline()) return;
    entry.deadline = deadlines_.move(entry.deadline, entry.session->deadline());
  }

  std::map<MacAddress, Entry> sessions_;
  DeadlineIndex<MacAddress> deadlines_;
  std::vector<MacAddress> due_;
};

}  // namespace omniset
