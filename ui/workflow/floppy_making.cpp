#include "ui/workflow/floppy_making.h"

namespace omniset {

void FloppyMaking::begin() {
  view_.showLabel(label_);
  view_.showRunning(false);
}

void FloppyMaking::start() {
  if (running_) return;
  label_ = view_.label();
  if (label_.empty()) label_ = kNoLabel;
  canceled_ = false;
  view_.showRunning(true);
  view_.showExplanation("Please wait...");
  view_.showStatus("Preparing");
  view_.showProgress(0);
  job_.start(label_);
  running_ = true;
}

// Asked first whether it has ended, so that its last word is not missed.
void FloppyMaking::tick() {
  if (!running_) return;
  const bool hasEnded = job_.hasEnded();
  if (const auto progress = job_.progress()) {
    view_.showProgress(progress->step * 100 / kFloppySteps);
    view_.showStatus(progress->statusText);
  }
  if (hasEnded) ended();
}

void FloppyMaking::ended() {
  running_ = false;
  if (canceled_) view_.showStatus("Canceled");
  view_.showExplanation("Another floppy?");
  view_.showRunning(false);
  if (closing_) view_.close();
}

void FloppyMaking::cancel() {
  if (!running_) return;
  canceled_ = true;
  job_.requestStop();
}

void FloppyMaking::close() {
  if (!running_) {
    view_.close();
    return;
  }
  closing_ = true;
  cancel();
}

}  // namespace omniset
