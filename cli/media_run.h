// Follows the making of a disk or a floppy to its end.
#pragma once

#include <functional>
#include <vector>

#include "cli/console.h"
#include "cli/media_job.h"
#include "cli/media_listener.h"
#include "core/clock.h"

namespace omniset {

// The listeners are told in their order. Once `isInterrupted`, the job is stopped.
MediaOutcome followMedia(MediaJob& job, const std::vector<MediaListener*>& listeners,
                         const Clock& clock, const std::function<bool()>& isInterrupted);

// How a command shows what it makes.
struct MediaShow {
  std::string device;    // that it makes, as its lines are to name it
  const char* medium;    // for sentences: "disk"
  const char* whatToDo;  // with the finished medium, a sentence
  bool json = false;
  bool trace = false;  // trace lines go to standard error
};

// Follows the job, to whose end Ctrl-C leads early; returns the exit status.
int showMedia(MediaJob& job, const MediaShow& show, const Console& console);

}  // namespace omniset
