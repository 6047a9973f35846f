// The job that writes a boot floppy in its thread, as the dialog runs it.
#pragma once

#include <memory>
#include <utility>

#include "core/thread.h"
#include "ui/workflow/floppy_making.h"

namespace omniset {

class FloppyService : public FloppyJob {
 public:
  explicit FloppyService(MediaServices media) : media_(std::move(media)) {}
  ~FloppyService() override;
  FloppyService(const FloppyService&) = delete;
  FloppyService& operator=(const FloppyService&) = delete;

  void start(const std::string& label) override;
  std::optional<FloppyProgress> progress() override;
  bool hasEnded() const override;
  void requestStop() override;

 private:
  // As DriveService::stop().
  void stop();

  MediaServices media_;
  std::unique_ptr<Thread<FloppyMaker, std::string>> thread_;
};

}  // namespace omniset
