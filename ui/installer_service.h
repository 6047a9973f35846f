// The router installer in its thread, as the window runs it.
#pragma once

#include "core/clock.h"
#include "core/temp_file.h"
#include "core/thread.h"
#include "install/router_installer.h"
#include "link/network_interfaces.h"

namespace omniset {

class InstallerService {
 public:
  // Opens the install link on the first adapter and starts the thread. Raises Error and SocketExc.
  // The clock outlives the service.
  explicit InstallerService(const Clock& clock);
  // Stops the thread, which takes up to a second; all sessions end.
  ~InstallerService();
  InstallerService(const InstallerService&) = delete;
  InstallerService& operator=(const InstallerService&) = delete;

  RouterInstaller& installer() { return thread_.job(); }

  // The thread ended by itself, because the network failed: nothing will happen any more.
  bool hasEnded() const { return thread_.exitCode() != ThreadBase::kStillActive; }

 private:
  SystemNetworkInterfaces interfaces_;
  SystemTempFiles tempFiles_;
  Thread<RouterInstaller, int> thread_;
};

}  // namespace omniset
