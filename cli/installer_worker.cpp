#include "cli/installer_worker.h"

#include <exception>

#include "core/error.h"
#include "core/trace.h"

namespace omniset {

namespace {
constexpr int kStopTimeoutMs = 5000;
constexpr int kFirstAdapter = 0;
}  // namespace

InstallerWorker::Job::Job(int adapter, const AdapterChoice& choice)
    : Services(choice),
      RouterInstaller(adapter, InstallerServices{interfaces_, makeUdpSocket(choice.adapter.name),
                                                 systemClock_, systemTempFiles_}),
      shownName_(choice.shownName) {}

void InstallerWorker::Job::run() {
  try {
    RouterInstaller::run();
  } catch (const SocketExc& e) {
    reason_ = socketFailureText(e.what(), shownName_);
    throw;
  } catch (const std::exception& e) {
    reason_ = e.what();
    throw;
  }
}

InstallerWorker::InstallerWorker(const AdapterChoice& choice) {
  try {
    thread_ = std::make_unique<Thread<Job, int>>("Router installer", kStopTimeoutMs, kFirstAdapter,
                                                 choice);
  } catch (const SocketExc& e) {
    throw Failure(socketFailureText(e.what(), choice.shownName));
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

}  // namespace omniset
