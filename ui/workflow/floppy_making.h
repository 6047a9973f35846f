// Making boot floppies, as the operator does it: one after the other, each with a label. Portable;
// the dialog maps its messages to these operations and shows what it is told.
#pragma once

#include <optional>
#include <string>

#include "media/floppy_maker.h"

namespace omniset {

// The job that writes one floppy, in its thread.
class FloppyJob {
 public:
  virtual ~FloppyJob() = default;
  // The one before has ended. Raises Error.
  virtual void start(const std::string& label) = 0;
  // The latest progress since this was last asked.
  virtual std::optional<FloppyProgress> progress() = 0;
  virtual bool hasEnded() const = 0;
  // The job fails with "Canceled" soon.
  virtual void requestStop() = 0;
};

// The dialog.
class FloppyView {
 public:
  virtual ~FloppyView() = default;
  virtual std::string label() const = 0;
  virtual void showLabel(const std::string& label) = 0;
  virtual void showExplanation(const std::string& text) = 0;
  virtual void showStatus(const std::string& text) = 0;
  // 0 to 100.
  virtual void showProgress(int percent) = 0;
  // While a job runs, only "Cancel" can be used; while none does, everything else.
  virtual void showRunning(bool running) = 0;
  virtual void close() = 0;
};

// All of it runs in the window's thread.
class FloppyMaking {
 public:
  // What is referred to is the owner's and outlives this.
  FloppyMaking(FloppyView& view, FloppyJob& job, std::string label)
      : view_(view), job_(job), label_(std::move(label)) {}

  void begin();   // the dialog is there
  void start();   // "Start"
  void tick();    // the timer
  void cancel();  // "Cancel"
  // "Done", the Escape key, the window's own close button. A job that runs is asked to stop, and
  // the dialog closes when it has ended: a floppy is not written any more behind the operator's
  // back.
  void close();

  // Of the floppy that was started last, or as it was given.
  const std::string& label() const { return label_; }

 private:
  void ended();

  FloppyView& view_;
  FloppyJob& job_;
  std::string label_;
  bool running_ = false;
  bool canceled_ = false;
  bool closing_ = false;
};

}  // namespace omniset
