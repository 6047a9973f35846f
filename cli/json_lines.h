// What the commands write with --json: one object per line, flushed line by line. Text that is not
// valid UTF-8 has its invalid bytes replaced.
#pragma once

#include <ostream>
#include <string>
#include <utility>

#include "cli/boot_event.h"
#include "cli/drive_table.h"
#include "cli/install_run.h"
#include "cli/media_listener.h"
#include "packages/package_catalogue.h"

namespace omniset {

// Each ends with a line feed.
std::string packageJson(const PackageRecord& package);
std::string routerJson(const MacAddress& mac, const std::string& label);
std::string driveJson(const DriveRow& row);

// {"event":"boot","step","mac"}, and by the step:
//   "answered": "address"; "refused": "text"; "requested": "image","name","file";
//   "sent": "image","name","bytes"; "gave-up": "image","name","requested"; "done"
std::string bootJson(const BootEvent& event);

// The events of an installation:
//   {"event":"router","mac","label"}
//   {"event":"status","mac","code","status","text","bytes","total"}
//   {"event":"result","mac","ok","text"}
class JsonEvents : public InstallListener {
 public:
  explicit JsonEvents(std::ostream& out) : out_(out) {}

  void routerSeen(const MacAddress& mac, const std::string& label) override;
  void statusChanged(const RouterState& state) override;
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override;

 private:
  std::ostream& out_;
};

// The events of a disk or a floppy:
//   {"event":"status","device","text","bytes","total"}, of a floppy "step","steps" for the last two
//   {"event":"result","device","ok","text"}
class JsonMediaEvents : public MediaListener {
 public:
  JsonMediaEvents(std::ostream& out, std::string device) : out_(out), device_(std::move(device)) {}

  void changed(const MediaState& state) override;
  void ended(const MediaOutcome& outcome) override;

 private:
  std::ostream& out_;
  const std::string device_;
};

}  // namespace omniset
