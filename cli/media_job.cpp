#include "cli/media_job.h"

namespace omniset {

MediaState mediaState(const DriveReport& report) {
  return {report.statusText, report.bytesDone, report.totalBytes, MediaState::Unit::kBytes,
          report.state == RouterStatus::kFinished};
}

MediaState mediaState(const FloppyProgress& progress) {
  return {progress.statusText, progress.step, kFloppySteps, MediaState::Unit::kSteps,
          progress.statusText == kFloppyCompleted};
}

}  // namespace omniset
