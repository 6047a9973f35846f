#include "ui/workflow/workflow.h"

#include <exception>
#include <stdexcept>

#include "core/trace.h"

namespace omniset {

namespace {

// The timer comes again soon.
constexpr int kPollAccessMs = 100;

// The reason of a failure stays to be read until something new is started.
RouterRecord asAnnouncedAgain(const RouterRecord& before, const RouterRecord& announced) {
  RouterRecord again = before;
  again.label = announced.label;
  again.lastSeen = announced.lastSeen;
  again.status = RouterStatus::kReady;
  again.bytesSent = 0;
  if (before.status != RouterStatus::kFailed) again.statusText.clear();
  return again;
}

}  // namespace

Workflow::Workflow(const WorkflowParts& parts)
    : parts_(parts),
      defaults_(parts.remembered, parts.sets),
      display_(parts.routers, parts.catalogue, parts.sets, defaults_, parts.view) {}

void Workflow::begin() {
  for (const std::string& name : parts_.sets.names()) parts_.view.addSet(name);
  display_.load();
}

void Workflow::listDrives() {
  for (RouterRecord& drive : parts_.drives.follow()) {
    defaults_.fill(drive);
    parts_.routers.addOrRefresh(drive);
  }
}

// What is in the list stays usable when the system does not tell.
void Workflow::drivesChanged() {
  try {
    listDrives();
  } catch (const std::exception& failure) {
    traceLine(std::string("looking for drives: ") + failure.what());
  }
  display_.refresh();
}

void Workflow::mediaRemoved(std::uint32_t letters) {
  parts_.drives.mediaRemoved(letters);
  drivesChanged();
}

// The installer's thread may hold its lock for long, when a disk is slow: then nothing is new in
// this tick. Nor does a router age, whose announcements may be waiting there.
void Workflow::poll() {
  try {
    followSessions();
    parts_.routers.age();
  } catch (const std::runtime_error& busy) {
    traceLine(std::string("the installer is busy: ") + busy.what());
  }
  parts_.drives.poll();
  display_.refresh();
}

void Workflow::followSessions() {
  RouterInstaller::Access access = parts_.installer.access(kPollAccessMs);
  while (auto announced = access.takeAnnouncement()) addAnnounced(std::move(*announced));
  parts_.routers.forEach([&](const RouterRecord& entry) {
    if (const RouterRecord* session = access.record(entry.mac)) {
      parts_.routers.updateStatus(entry.mac, *session);
    }
  });
}

// A router that comes again keeps its request. What was entered for it stays: it may have failed
// for want of a file on this side and still be announcing itself, while the operator corrects that.
// And an announcement in flight must not put another request in place of the one that is being
// installed. No router has a drive's address, whatever a frame says.
void Workflow::addAnnounced(RouterRecord announced) {
  if (isDriveAddress(announced.mac)) return;
  if (const RouterRecord* before = parts_.routers.find(announced.mac)) {
    if (parts_.routers.selected() == before) storeFieldsShown();
    announced = asAnnouncedAgain(*before, announced);
  } else {
    defaults_.fill(announced);
  }
  parts_.routers.addOrRefresh(announced);
}

// The selected entry, if what it is installed with may be changed.
RouterRecord* Workflow::editableEntry() {
  RouterRecord* entry = parts_.routers.selected();
  return entry && !isUnderWay(*entry) ? entry : nullptr;
}

// What was typed belongs to the entry that is shown.
void Workflow::storeFieldsShown() {
  RouterRecord* entry = editableEntry();
  if (entry && display_.shows(entry->mac)) storeFields(parts_.view.fields(), *entry);
}

void Workflow::selectionChanging() {
  storeFieldsShown();
}

// A fresh row of the same router changes nothing of what was typed.
void Workflow::selectionChanged() {
  display_.refresh();
}

void Workflow::parametersClicked() {
  if (!editableEntry()) return;
  storeFieldsShown();
  display_.load();
}

void Workflow::chooseScript() {
  const auto path = parts_.person.chooseScript();
  if (!path) return;
  traceLine("selected: " + *path);
  ParameterFields fields = parts_.view.fields();
  fields.scriptFile = *path;
  parts_.view.showFields(fields);
  storeFieldsShown();
}

void Workflow::togglePackage(int row) {
  if (row < 0 || row >= parts_.catalogue.count()) return;
  if (RouterRecord* entry = editableEntry()) {
    PackageMarks marks = marksOf(parts_.catalogue, entry->packages);
    marks[static_cast<std::size_t>(row)].flip();
    entry->packages = choiceOf(parts_.catalogue, marks, entry->packages);
    display_.loadMarks();
  }
  describe(row);
}

void Workflow::describePackage() {
  describe(parts_.view.packageAtMark());
}

void Workflow::describe(int row) {
  if (row < 0 || row >= parts_.catalogue.count()) return;
  parts_.statusBar.show(parts_.catalogue.dependencyText(row));
}

void Workflow::selectPackages(bool all) {
  RouterRecord* entry = editableEntry();
  if (!entry) return;
  const PackageMarks marks(parts_.catalogue.records().size(), all);
  entry->packages = choiceOf(parts_.catalogue, marks, entry->packages);
  display_.loadMarks();
}

void Workflow::browse() {
  if (const auto folder = parts_.person.chooseFolder(parts_.catalogue.folder())) {
    openFolder(*folder);
  }
}

void Workflow::folderEntered() {
  openFolder(parts_.view.folder());
}

void Workflow::openFolder(const std::string& folder) {
  parts_.catalogue.scan(folder);
  parts_.view.showFolder(folder);
  display_.loadMarks();
}

}  // namespace omniset
