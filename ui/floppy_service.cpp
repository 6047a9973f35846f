#include "ui/floppy_service.h"

#include <exception>

#include "core/trace.h"

namespace omniset {

namespace {
constexpr int kStopTimeoutMs = 5000;
// The queue of progress is held for a moment only.
constexpr int kProgressMs = 5000;
}  // namespace

FloppyService::~FloppyService() {
  stop();
}

void FloppyService::start(const std::string& label) {
  stop();
  auto thread = std::make_unique<Thread<FloppyMaker, std::string>>("Floppy maker", kStopTimeoutMs,
                                                                   label, media_);
  thread->start();
  thread_ = std::move(thread);
}

std::optional<FloppyProgress> FloppyService::progress() {
  return thread_ ? thread_->job().progress().pop(kProgressMs) : std::nullopt;
}

bool FloppyService::hasEnded() const {
  return !thread_ || thread_->exitCode() != ThreadBase::kStillActive;
}

void FloppyService::requestStop() {
  if (thread_) thread_->job().stopEvent().set();
}

void FloppyService::stop() {
  if (!thread_) return;
  try {
    thread_->stop();
  } catch (const std::exception& failure) {
    traceLine(std::string("stopping the floppy's job: ") + failure.what());
  }
  thread_.reset();
}

}  // namespace omniset
