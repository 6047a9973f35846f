// Who shows how far a disk or a floppy is.
#pragma once

#include <string>

#include "cli/media_job.h"
#include "core/clock.h"

namespace omniset {

struct MediaOutcome {
  bool isDone = false;
  bool isCanceled = false;
  std::string text;  // the last status, or why it failed
};

class MediaListener {
 public:
  virtual ~MediaListener() = default;
  virtual void changed(const MediaState& state) = 0;
  // To be called about every 100 ms.
  virtual void tick(Micros /*now*/) {}
  // The last call.
  virtual void ended(const MediaOutcome& outcome) = 0;
};

}  // namespace omniset
