// What the main window does: one operation for everything that the operator or the timer can bring
// about. All of it runs in the window's thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "install/router_installer.h"
#include "install/router_list.h"
#include "packages/package_catalogue.h"
#include "ui/registry_keys.h"
#include "ui/settings.h"
#include "ui/workflow/entry_display.h"
#include "ui/workflow/local_drives.h"
#include "ui/workflow/main_view.h"
#include "ui/workflow/package_sets.h"
#include "ui/workflow/request_defaults.h"

namespace omniset {

// What the workflow works with; all of it is the owner's and outlives it.
struct WorkflowParts {
  RouterInstaller& installer;
  RouterList& routers;
  LocalDrives& drives;
  PackageCatalogue& catalogue;
  PackageSets& sets;
  RememberedParameters& remembered;
  RegistryRoot& registry;
  StatusText& statusBar;
  MainView& view;
  Operator& person;
};

// Operations raise Error when the system fails them; only what belongs to one router stays with it.
class Workflow {
 public:
  explicit Workflow(const WorkflowParts& parts);

  // Shows the sets and the empty selection. To be called once, before the others.
  void begin();

  // Adds the local drives to the router list. To be called once; raises Error.
  void listDrives();

  // The timer: takes announcements, follows the sessions and the local drive's job, lets silent
  // routers go, shows the state.
  void poll();

  // Drives of this computer have come or gone; and the medium of these (bit 0 is A) is out.
  void drivesChanged();
  void mediaRemoved(std::uint32_t letters);

  // The installer's thread has ended by itself. May be called on every tick.
  void installerEnded();

  // The router list: its selection is about to change, and has changed.
  void selectionChanging();
  void selectionChanged();

  // The button that is "Install" or "Reboot", by the selected entry's state.
  void install();
  void cancel();

  void parametersClicked();  // "Keep old configuration" and "Configure script:"
  void chooseScript();

  // Packages. A row without a package does nothing.
  void togglePackage(int row);
  void describePackage();  // the one under the selection mark, in the status bar
  void selectAllPackages() { selectPackages(true); }
  void selectNoPackages() { selectPackages(false); }

  // The folder of packages.
  void browse();
  void folderEntered();
  void openFolder(const std::string& folder);

  // Package sets.
  void applyChosenSet();
  void saveSet();
  void deleteSet();

 private:
  RouterRecord* editableEntry();
  void storeFieldsShown();
  void describe(int row);
  void selectPackages(bool all);
  void followSessions();
  void addAnnounced(RouterRecord announced);

  void startInstallation();
  bool confirmed(const RouterRecord& request);
  void rememberInstallation(const RouterRecord& entry, const std::vector<std::string>& packages);
  void handToInstaller(RouterRecord request, const std::string& folder);
  void cancelSession(MacAddress mac);
  void tellInstallerEnd();
  void requestReboot(MacAddress mac);
  void whenInstallerIsFree(const std::function<void(RouterInstaller::Access&)>& action);

  std::optional<std::string> newSetName();

  WorkflowParts parts_;
  RequestDefaults defaults_;
  EntryDisplay display_;
  bool installerEnded_ = false;
};

}  // namespace omniset
