#include "ui/drive_service.h"

#include <exception>
#include <string>

#include "core/trace.h"

namespace omniset {

namespace {

constexpr int kStopTimeoutMs = 5000;
// The queue of reports is held for a moment only.
constexpr int kReportMs = 5000;

class SetAtEnd {
 public:
  explicit SetAtEnd(Event& event) : event_(event) {}
  ~SetAtEnd() { event_.set(); }
  SetAtEnd(const SetAtEnd&) = delete;
  SetAtEnd& operator=(const SetAtEnd&) = delete;

 private:
  Event& event_;
};

}  // namespace

void DriveService::Job::run() {
  const SetAtEnd over(over_);
  DriveMaker::run();
}

DriveService::~DriveService() {
  stop();
}

bool DriveService::awaitEnd(int timeoutMs) {
  return !thread_ || thread_->job().over().wait(timeoutMs);
}

void DriveService::start(const RInfo& what, std::int64_t totalBytes) {
  stop();
  auto thread =
      std::make_unique<Thread<Job, RInfo>>("Drive maker", kStopTimeoutMs, what, media_, totalBytes);
  thread->start();
  thread_ = std::move(thread);
}

std::optional<DriveReport> DriveService::report() {
  return thread_ ? thread_->job().reports().pop(kReportMs) : std::nullopt;
}

bool DriveService::hasEnded() const {
  return !thread_ || thread_->exitCode() != ThreadBase::kStillActive;
}

void DriveService::requestStop() {
  if (thread_) thread_->job().stopEvent().set();
}

void DriveService::stop() {
  if (!thread_) return;
  try {
    thread_->stop();
  } catch (const std::exception& failure) {
    traceLine(std::string("stopping the drive's job: ") + failure.what());
  }
  thread_.reset();
}

}  // namespace omniset
