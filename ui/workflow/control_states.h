// Which controls of the main window can be used, and what the Install button says.
#pragma once

#include <string>
#include <vector>

#include "install/router_record.h"

namespace omniset {

enum class FieldState { kDisabled, kReadOnly, kEnabled };

struct ControlStates {
  bool install = false;
  std::string installLabel = "Install";  // or "Reboot"
  bool cancel = false;

  // Parameters.
  bool keepConfiguration = false;
  FieldState address = FieldState::kDisabled;  // also netmask and gateway
  bool baudRate = false;
  bool useScript = false;
  FieldState scriptFile = FieldState::kDisabled;
  bool chooseScript = false;

  // Packages.
  bool marks = false;  // the operator may change them; also for "Select all" and "Select none"
  bool saveSet = false;
  bool deleteSet = false;

  bool operator==(const ControlStates&) const = default;
};

// What the set that is chosen in the line of sets has to do with the selected entry.
struct SetChoice {
  bool chosen = false;
  bool isEntrys = false;  // the entry's packages are those of the set
};

// `entry` is null when none is selected.
ControlStates controlStates(const RouterRecord* entry, const SetChoice& set);

// An installation has been started and not yet ended, well or badly.
bool isUnderWay(const RouterRecord& entry);

// A local drive that was installed onto, well or badly. It does not announce itself to be ready
// again, as a router does: "Cancel" makes it so.
bool isDriveWithOutcome(const RouterRecord& entry);

// How much of the packages has been sent, 0 to 100. All of it, once they have been.
int progressOf(const RouterRecord& entry);

}  // namespace omniset
