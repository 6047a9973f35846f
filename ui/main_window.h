// The main window: maps messages to the workflow and owns everything that the program works with.
#pragma once

#include <memory>

#include "boot/local_address.h"
#include "core/clock.h"
#include "core/startup.h"
#include "install/router_list.h"
#include "packages/package_catalogue.h"
#include "ui/boot_service.h"
#include "ui/drive_service.h"
#include "ui/installer_service.h"
#include "ui/list_rows.h"
#include "ui/main_layout.h"
#include "ui/registry_keys.h"
#include "ui/settings.h"
#include "ui/status_bar_text.h"
#include "ui/toolkit/dialog.h"
#include "ui/toolkit/image_list.h"
#include "ui/window_operator.h"
#include "ui/window_view.h"
#include "ui/workflow/local_drives.h"
#include "ui/workflow/net_booting.h"
#include "ui/workflow/package_sets.h"
#include "ui/workflow/workflow.h"

namespace omniset {

class Omniset : public Dialog, public Desktop {
 public:
  // Builds and shows the window and starts the installer and the boot service. Raises Error and
  // SocketExc.
  Omniset();
  ~Omniset() override;

  int runMessageLoop() override;
  void shutDown() override;

  INT_PTR dialogProcedure(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  // What is bound to the controls, which exist only once the dialog does.
  struct Bound {
    Bound(Omniset& window, RouterInstaller& installer);

    RouterRowsView routerRows;
    PackageRowsView packageRows;
    StatusBarText statusText;
    WindowView view;
    RouterList routers;
    LocalDrives drives;
    PackageCatalogue catalogue;
    Workflow workflow;
  };

  static constexpr UINT_PTR kPollTimer = 1;

  void createDialog();
  void startBootService();
  void setUpLists();
  void placeWindow(Registry& settings);
  void readSettings();
  void writeSettings();

  INT_PTR answer(LONG_PTR result) const;
  bool privateMessage(WPARAM tag);
  INT_PTR defaultButton() const;
  bool command(int id, int notification);
  bool parameterCommand(int id);
  bool packageCommand(int id);
  INT_PTR notified(const NMHDR& notification);
  void routersNotified(const NMHDR& notification);
  INT_PTR packagesNotified(const NMHDR& notification);
  void packageClicked(const NMHDR& notification);
  void packageKey(const NMHDR& notification);
  void editNetBooting();
  void makeFloppies();
  void devicesChanged(WPARAM event, LPARAM what);
  void timerTick();
  void closeRequested();
  void sized();

  SystemClock clock_;
  UserRegistry registry_;
  PackageSets sets_;
  RememberedParameters remembered_;
  BootServerSettings bootServer_;

  MainLayout layout_;
  StatusBar statusBar_;
  ImageList routerImages_;
  ImageList packageImages_;
  WindowOperator operator_{*this};
  std::unique_ptr<InstallerService> service_;
  BootService bootService_;
  MediaServices media_;
  DriveService driveService_{media_};
  SystemLocalAddresses localAddresses_;
  NetBooting netBooting_{bootServer_, bootService_, localAddresses_, operator_};
  std::unique_ptr<Bound> bound_;
  bool shutDown_ = false;

  // The last member: the native window goes first, while everything that its messages reach is
  // still there.
  struct NativeWindow {
    Omniset& window;
    ~NativeWindow() { window.destroy(); }
  } nativeWindow_{*this};
};

}  // namespace omniset
