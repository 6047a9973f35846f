#include "cli/installer_worker.h"

#include <exception>

#include "core/error.h"
#include "core/trace.h"

namespace omniset {

namespace {
constexpr int kStopTimeoutMs = 5000;
constexpr int kFirstAdapter = 0;
}  // namespace

void InstallerWorker::Job::run() {
  try {
    RouterInstaller::run();
  } catch (const std::exception& e) {
    reason_ = e.what();
    throw;
  }
}

InstallerWorker::InstallerWorker(const AdapterChoice& choice)
    : shownName_(choice.shownName), interfaces_(choice.adapter) {
  try {
    thread_ = std::make_unique<Thread<Job, int>>(
        "Router installer", kStopTimeoutMs, kFirstAdapter,
        InstallerServices{interfaces_, makeUdpSocket(choice.adapter.name), clock_, tempFiles_});
  } catch (const SocketExc& e) {
    throw Failure(socketFailureText(e.what(), shownName_));
  }
  thread_->start();
}

InstallerWorker::~InstallerWorker() {
  try {
    thread_->stop();
  } catch (const std::exception& e) {
    traceLine(std::string("stopping the installer: ") + e.what());
  }
}

std::string InstallerWorker::reason() const {
  return socketFailureText(thread_->job().reason(), shownName_);
}

}  // namespace omniset
