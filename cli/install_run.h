// An unattended installation of several routers: waits for the wanted ones to announce themselves,
// installs each on sight, asks for their reboot, and tells when all is done. It neither sleeps nor
// waits: its owner polls it, about every 100 ms, while another thread runs the installer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/mac_address.h"
#include "install/router_installer.h"
#include "install/router_record.h"

namespace omniset {

enum class RouterChoice { kNamed, kFirst, kAll };

struct InstallRunOptions {
  RouterChoice choice = RouterChoice::kAll;
  std::vector<MacAddress> named;  // kNamed: these routers
  std::size_t count = 0;          // kFirst: the first so many that announce themselves
  RouterRecord request;           // what every router gets; its MAC, label and times do not count
  std::string packagesFolder;
  std::int64_t totalBytes = 0;  // of the packages and the script
  bool reboot = false;
  Micros wait = 60 * kSecond;  // for announcements, from the run's construction
};

// A router's state as it was read last.
struct RouterState {
  MacAddress mac;
  std::string label;  // whatever bytes the target sent
  RouterStatus status = RouterStatus::kReady;
  std::string text;
  std::int64_t bytes = 0;  // never more than total
  std::int64_t total = 0;
};

// Told by poll(), interrupt() and abandon(), in their thread and outside the installer's lock.
class InstallListener {
 public:
  virtual ~InstallListener() = default;
  // A wanted router announced itself: its installation starts now.
  virtual void routerSeen(const MacAddress& mac, const std::string& label) = 0;
  // The status or its text changed, or, at most five times a second, the bytes did.
  virtual void statusChanged(const RouterState& state) = 0;
  // The last that is heard of the router. Also for named routers that were never seen.
  virtual void routerDone(const MacAddress& mac, bool ok, const std::string& text) = 0;
};

struct InstallOutcome {
  std::size_t started = 0;
  std::size_t succeeded = 0;
  std::size_t failed = 0;  // with a result that says why, the missing ones that were named included
  std::size_t missing = 0;  // wanted, but did not announce themselves within the wait
  bool abandoned = false;   // interrupted or abandoned before its end
};

class InstallRun {
 public:
  // What is referred to outlives the run.
  InstallRun(const InstallRunOptions& options, RouterInstaller& installer, const Clock& clock,
             InstallListener& listener);

  // One turn. Does nothing once the run is done.
  void poll();
  // Every router has its result and no other is awaited.
  bool done() const { return done_; }

  // Ends the sessions of all unfinished routers, whose results say "interrupted"; the run is done.
  void interrupt() { abandon("interrupted"); }
  // The same, for another reason.
  void abandon(const std::string& reason);

  const InstallOutcome& outcome() const { return outcome_; }
  // Of a run that is done: kExitDone, kExitFailed or kExitNoRouter of cli/exit_status.h.
  int exitCode() const;

 private:
  struct Router {
    RouterState now;   // as read last
    RouterState told;  // as the listener knows it
    Micros toldAt = 0;
    bool hasSession = true;
    bool rebootRequested = false;
    bool finished = false;
  };

  void takeTurn();
  std::vector<RouterRecord> takeAnnouncements();
  bool isWanted(const MacAddress& mac) const;
  void start(const RouterRecord& announced);
  std::optional<std::string> install(const RouterRecord& announced);
  void readStates();
  void follow(Router& router);
  void tellChange(Router& router);
  void finish(Router& router, bool ok, const std::string& text);
  void cancelSessions();
  void failUnseen(const std::string& text);
  void endWait();
  bool isComplete() const;

  const InstallRunOptions options_;
  RouterInstaller& installer_;
  const Clock& clock_;
  InstallListener& listener_;
  const Micros waitEnd_;
  std::set<MacAddress> unseen_;           // named routers that have not announced themselves yet
  std::map<MacAddress, Router> routers_;  // that were started
  std::size_t running_ = 0;
  bool waitOver_ = false;
  bool done_ = false;
  InstallOutcome outcome_;
};

}  // namespace omniset
