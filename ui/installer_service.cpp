#include "ui/installer_service.h"

#include <exception>
#include <string>

#include "core/trace.h"
#include "core/udp_socket.h"

namespace omniset {

namespace {
constexpr int kStopTimeoutMs = 5000;
constexpr int kFirstAdapter = 0;
}  // namespace

InstallerService::InstallerService(const Clock& clock)
    : thread_("Router installer", kStopTimeoutMs, kFirstAdapter,
              InstallerServices{interfaces_, makeUdpSocket(), clock, tempFiles_}) {
  thread_.start();
}

InstallerService::~InstallerService() {
  try {
    thread_.stop();
  } catch (const std::exception& failure) {
    traceLine(std::string("stopping the installer: ") + failure.what());
  }
}

}  // namespace omniset
