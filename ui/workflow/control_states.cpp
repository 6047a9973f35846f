#include "ui/workflow/control_states.h"

#include <algorithm>

namespace omniset {

namespace {

FieldState fieldState(bool usable, bool underWay) {
  if (underWay) return FieldState::kReadOnly;
  return usable ? FieldState::kEnabled : FieldState::kDisabled;
}

// A kept configuration leaves nothing else to set, and the operator's own script replaces the one
// that the address fields and the speed go into. A local drive is wiped, so nothing can be kept;
// the address of the router that it goes into cannot be set, because it belongs to a card that is
// not known; and the speed is added to any script.
void setParameterStates(ControlStates& states, const RouterRecord& entry) {
  const bool underWay = isUnderWay(entry);
  const bool editable = !underWay;
  const bool configured = editable && !entry.keepConfiguration;
  const bool isDrive = entry.kind == kLocalDrive;
  const bool generated = configured && !isDrive && !entry.useOwnScript;
  states.keepConfiguration = editable && !isDrive;
  states.address = fieldState(generated, underWay);
  states.baudRate = generated || (configured && isDrive);
  states.useScript = configured;
  states.scriptFile = fieldState(configured && entry.useOwnScript, underWay);
  states.chooseScript = configured && entry.useOwnScript;
}

}  // namespace

bool isUnderWay(const RouterRecord& entry) {
  return entry.status == RouterStatus::kInstalling || entry.status == RouterStatus::kWaitingReboot;
}

bool isDriveWithOutcome(const RouterRecord& entry) {
  return entry.kind == kLocalDrive &&
         (entry.status == RouterStatus::kFinished || entry.status == RouterStatus::kFailed);
}

ControlStates controlStates(const RouterRecord* entry, const SetChoice& set) {
  ControlStates states;
  states.deleteSet = set.chosen;
  if (!entry) return states;
  states.install =
      entry->status == RouterStatus::kReady || entry->status == RouterStatus::kWaitingReboot;
  if (entry->status == RouterStatus::kWaitingReboot) states.installLabel = "Reboot";
  states.cancel = isUnderWay(*entry) || isDriveWithOutcome(*entry);
  states.marks = !isUnderWay(*entry);
  states.saveSet = !set.chosen || !set.isEntrys;
  setParameterStates(states, *entry);
  return states;
}

int progressOf(const RouterRecord& entry) {
  if (entry.status == RouterStatus::kFinished || entry.status == RouterStatus::kWaitingReboot) {
    return 100;
  }
  if (entry.packageBytes <= 0) return 0;
  return static_cast<int>(
      std::clamp<std::int64_t>(entry.bytesSent * std::int64_t{100} / entry.packageBytes, 0, 100));
}

}  // namespace omniset
