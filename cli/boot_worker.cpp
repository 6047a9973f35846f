#include "cli/boot_worker.h"

#include <exception>

#include "cli/boot_place.h"
#include "cli/stoppable_socket.h"
#include "core/error.h"
#include "core/trace.h"

namespace omniset {

namespace {
constexpr int kStopTimeoutMs = 5000;
constexpr int kUnused = 0;
}  // namespace

BootWorker::Services::Services(const BootWork& work)
    : choice_(work.choice),
      addresses_(work.choice.adapter.name),
      events_(work.clientAddress, work.refusal) {}

BootWorker::Job::Job(int number, const BootWork& work)
    : Services(work), Pixie(number, {true, work.clientAddress}, services(work.images)) {}

PixieServices BootWorker::Job::services(const BootImageSource& images) {
  return {[this] {
            return std::make_unique<StoppableSocket>(makeUdpSocket(choice_.adapter.name),
                                                     stopEvent());
          },
          addresses_,
          clock_,
          images,
          [this] { return static_cast<int>(random_() >> 1); },
          &events_};
}

void BootWorker::Job::run() {
  try {
    Pixie::run();
  } catch (const StopRequested&) {
    traceLine("stopped while it waited for a client");
  } catch (const std::exception& e) {
    reason_ = bootServiceFailure(e.what(), choice_.shownName);
    throw;
  }
}

BootWorker::BootWorker(const BootWork& work)
    : shownName_(work.choice.shownName),
      addresses_(work.choice.adapter.name),
      adapterWatch_(work.choice.adapter.name, addresses_) {
  checkBootPorts([&] { return makeUdpSocket(work.choice.adapter.name); }, work.choice.shownName);
  thread_ = std::make_unique<Thread<Job, int>>("PXE Booter", kStopTimeoutMs, kUnused, work);
  thread_->start();
}

bool BootWorker::hasEnded() {
  isDeaf_ = isDeaf_ || adapterWatch_.isReplaced();
  return isDeaf_ || thread_->exitCode() != ThreadBase::kStillActive;
}

std::string BootWorker::reason() const {
  return isDeaf_ ? replacedAdapterText(shownName_) : thread_->job().reason();
}

BootWorker::~BootWorker() {
  try {
    thread_->stop();
  } catch (const std::exception& e) {
    traceLine(std::string("stopping the boot service: ") + e.what());
  }
}

}  // namespace omniset
