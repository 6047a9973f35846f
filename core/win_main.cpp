// The entry of the window program.
#include <windows.h>
// After windows.h, whose types they use.
#include <commctrl.h>
#include <winsock.h>

#include "core/error.h"
#include "core/startup.h"
#include "ui/main_window.h"
#include "ui/toolkit/instance.h"

namespace omniset {

namespace {

constexpr const char* kInstanceMutex = "SingleDeployhubInstanceMutex";
constexpr WORD kWinsock11 = 0x0102;

class WindowsStartup : public StartupSystem {
 public:
  // The mutex is never closed: it goes with the process, and with it the claim.
  bool claimSingleInstance() override {
    if (!CreateMutexA(nullptr, TRUE, kInstanceMutex)) throw Error("CreateMutex() failed");
    return GetLastError() != ERROR_ALREADY_EXISTS;
  }

  void startSockets() override {
    WSADATA data;
    if (WSAStartup(kWinsock11, &data) != 0) throw Error("WSA start failed");
  }

  void cleanUpSockets() override { WSACleanup(); }

  void startControls() override { InitCommonControls(); }

  std::unique_ptr<Desktop> makeWindow() override { return std::make_unique<Omniset>(); }

  void tell(const std::string& text, const char* caption, unsigned style) override {
    MessageBoxA(nullptr, text.c_str(), caption, style);
  }
};

}  // namespace

}  // namespace omniset

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  omniset::setModuleInstance(instance);
  omniset::WindowsStartup system;
  return omniset::runProgram(system);
}
