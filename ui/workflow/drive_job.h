// The job that installs onto a local disk, in its thread. There is one at a time.
#pragma once

#include <cstdint>
#include <optional>

#include "media/drive_maker.h"

namespace omniset {

// All operations are for the window's thread.
class DriveJob {
 public:
  virtual ~DriveJob() = default;
  // Waits until the job that was started last has ended; false when it still runs. True at once
  // when none was started. Raises Error "Object WaitForSingleObject".
  virtual bool awaitEnd(int timeoutMs) = 0;
  // The one before has ended. Raises Error.
  virtual void start(const RInfo& what, std::int64_t totalBytes) = 0;
  // The latest report since this was last asked.
  virtual std::optional<DriveReport> report() = 0;
  // Also true when none was started.
  virtual bool hasEnded() const = 0;
  // The job fails with "Canceled" soon.
  virtual void requestStop() = 0;
};

}  // namespace omniset
