#include "ui/boot_service.h"

#include <exception>

#include "boot/boot_checks.h"
#include "boot/boot_images.h"
#include "core/trace.h"
#include "core/udp_socket.h"

namespace omniset {

namespace {
constexpr int kStopTimeoutMs = 5000;
constexpr int kUnused = 0;
}  // namespace

PixieServices BootService::Services::services() {
  return {[] { return makeUdpSocket(); }, addresses_, clock_, loadBootImage,
          [this] { return static_cast<int>(random_() >> 1); }};
}

void BootService::Job::run() {
  try {
    // The service itself would share its BOOTP port, and finds its TFTP port taken only when a
    // client is there already.
    tryBootPorts([] { return makeUdpSocket(); });
    Pixie::run();
  } catch (const std::exception& failure) {
    reason_ = failure.what();
    throw;
  }
}

BootService::~BootService() {
  stop();
}

void BootService::start(const PixieConfig& config) {
  thread_ = std::make_unique<Thread<Job, int>>("PXE Booter", kStopTimeoutMs, kUnused, config);
  thread_->start();
}

void BootService::stop() {
  if (!thread_) return;
  try {
    thread_->stop();
  } catch (const std::exception& failure) {
    traceLine(std::string("stopping the boot service: ") + failure.what());
  }
  thread_.reset();
}

}  // namespace omniset
