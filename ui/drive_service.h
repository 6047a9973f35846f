// The job that installs onto a local disk in its thread, as the window runs it.
#pragma once

#include <memory>
#include <utility>

#include "core/thread.h"
#include "ui/workflow/drive_job.h"

namespace omniset {

class DriveService : public DriveJob {
 public:
  explicit DriveService(MediaServices media) : media_(std::move(media)) {}
  ~DriveService() override;
  DriveService(const DriveService&) = delete;
  DriveService& operator=(const DriveService&) = delete;

  bool awaitEnd(int timeoutMs) override;
  void start(const RInfo& what, std::int64_t totalBytes) override;
  std::optional<DriveReport> report() override;
  bool hasEnded() const override;
  void requestStop() override;
  // Stops the job, which takes up to a second; one that hangs in a call of the system is ended
  // after five.
  void stop();

 private:
  // Tells when its work is over.
  class Job : public DriveMaker {
   public:
    using DriveMaker::DriveMaker;
    void run() override;
    Event& over() { return over_; }

   private:
    Event over_{true, false};
  };

  MediaServices media_;
  std::unique_ptr<Thread<Job, RInfo>> thread_;
};

}  // namespace omniset
