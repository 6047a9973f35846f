// Installing, rebooting and cancelling.
#include <exception>
#include <stdexcept>

#include "core/trace.h"
#include "ui/workflow/workflow.h"

namespace omniset {

void Workflow::install() {
  const RouterRecord* entry = parts_.routers.selected();
  if (!entry) return;
  if (installerEnded_ && entry->kind != kLocalDrive) {
    tellInstallerEnd();
  } else if (entry->status == RouterStatus::kReady) {
    startInstallation();
  } else if (entry->status == RouterStatus::kWaitingReboot) {
    requestReboot(entry->mac);
  }
}

// What the operator is asked about is what is installed: meanwhile the timer goes on, the entry may
// go or be replaced, and the folder may be loaded anew.
void Workflow::startInstallation() {
  display_.refresh();
  RouterRecord request = *parts_.routers.selected();
  const PackageMarks marks = marksOf(parts_.catalogue, request.packages);
  if (countOf(marks) == 0) {
    parts_.person.tell("Cannot install", "No packages selected", Operator::Icon::kError);
    return;
  }
  storeFields(parts_.view.fields(), request);
  const std::vector<std::string> installed = choiceOf(parts_.catalogue, marks, {});
  request.packages = choiceOf(parts_.catalogue, marks, request.packages);
  request.packageFiles = filesOf(parts_.catalogue, marks);
  request.packageBytes = bytesOf(parts_.catalogue, request.packageFiles);
  const std::string folder = parts_.catalogue.folder();
  if (!confirmed(request)) return;
  const bool isDrive = request.kind == kLocalDrive;
  const auto drivePlan = isDrive ? parts_.drives.plan(request, folder) : std::nullopt;
  if (isDrive && !drivePlan) return;
  RouterRecord* entry = parts_.routers.find(request.mac);
  if (!entry || entry->status != RouterStatus::kReady) return;
  request.lastSeen = entry->lastSeen;
  *entry = request;
  rememberInstallation(request, installed);
  if (isDrive) {
    parts_.drives.start(request, *drivePlan);
  } else {
    handToInstaller(request, folder);
  }
  display_.load();
}

bool Workflow::confirmed(const RouterRecord& request) {
  for (const std::string& warning : warningsOf(request)) {
    if (!parts_.person.ask("Warning", warning)) return false;
  }
  return true;
}

void Workflow::rememberInstallation(const RouterRecord& entry,
                                    const std::vector<std::string>& packages) {
  defaults_.remember(entry);
  if (parts_.sets.replace(kPreviousInstall, packages)) parts_.view.addSet(kPreviousInstall);
}

// What keeps a session from being made belongs to the entry.
void Workflow::handToInstaller(RouterRecord request, const std::string& folder) {
  if (!request.useOwnScript) request.scriptPath.clear();
  whenInstallerIsFree([&](RouterInstaller::Access& access) {
    try {
      access.install(request, folder);
      if (const RouterRecord* session = access.record(request.mac)) request = *session;
    } catch (const std::exception& failure) {
      request.status = RouterStatus::kFailed;
      request.statusText = std::string("Installation failed: ") + failure.what();
    }
    parts_.routers.updateStatus(request.mac, request);
  });
}

void Workflow::requestReboot(MacAddress mac) {
  whenInstallerIsFree([&](RouterInstaller::Access& access) { access.requestReboot(mac); });
}

void Workflow::cancel() {
  const RouterRecord* entry = parts_.routers.selected();
  if (!entry || (!isUnderWay(*entry) && !isDriveWithOutcome(*entry))) return;
  if (entry->kind == kLocalDrive) {
    parts_.drives.cancel(entry->mac);
    drivesChanged();
  } else {
    cancelSession(entry->mac);
  }
  display_.load();
}

void Workflow::cancelSession(MacAddress mac) {
  whenInstallerIsFree([&](RouterInstaller::Access& access) {
    access.cancel(mac);
    parts_.routers.release(mac);
  });
}

// Once by itself, and when something is to be installed nevertheless. The timer goes on while the
// message is open.
void Workflow::installerEnded() {
  if (installerEnded_) return;
  installerEnded_ = true;
  tellInstallerEnd();
}

void Workflow::tellInstallerEnd() {
  parts_.person.tell(
      "Error",
      "The network failed, and with it all installations. Check the network adapter, "
      "then close this program and start it again.",
      Operator::Icon::kError);
}

// A lock that the installer's thread holds for long, because a disk is slow, is no reason to end
// the program and with it all installations.
void Workflow::whenInstallerIsFree(const std::function<void(RouterInstaller::Access&)>& action) {
  std::optional<RouterInstaller::Access> access;
  try {
    access.emplace(parts_.installer.access());
  } catch (const std::runtime_error& busy) {
    traceLine(std::string("the installer is busy: ") + busy.what());
  }
  if (access) {
    action(*access);
  } else {
    parts_.person.tell("Error", "The installer is busy, for instance with a slow disk. Try again.",
                       Operator::Icon::kError);
  }
}

}  // namespace omniset
