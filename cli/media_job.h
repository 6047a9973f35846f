// The making of a disk or a floppy in its thread, as the commands see it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "core/thread.h"
#include "media/drive_maker.h"
#include "media/floppy_maker.h"

namespace omniset {

// How far it is.
struct MediaState {
  enum class Unit { kBytes, kSteps };

  std::string text;  // "Formatting drive..."; of a job that failed why
  std::int64_t done = 0;
  std::int64_t total = 0;
  Unit unit = Unit::kBytes;
  bool isFinished = false;  // with success
};

MediaState mediaState(const DriveReport& report);
MediaState mediaState(const FloppyProgress& progress);

// Used by one thread.
class MediaJob {
 public:
  virtual ~MediaJob() = default;
  // The latest state, if it is new; waits for it at most that long.
  virtual std::optional<MediaState> news(int timeoutMs) = 0;
  // What is new then, is the last.
  virtual bool hasEnded() const = 0;
  // Asks it to stop, and waits for its end, at most five seconds. To be called once.
  virtual void stop() = 0;
};

inline LockedQueue<DriveReport>& newsOf(DriveMaker& maker) {
  return maker.reports();
}
inline LockedQueue<FloppyProgress>& newsOf(FloppyMaker& maker) {
  return maker.progress();
}

template <class Maker, class Arg>
class MediaThread : public MediaJob {
 public:
  // Starts the thread. `handed` is what the maker takes behind `arg`.
  template <class... Handed>
  MediaThread(const char* name, Arg arg, Handed&&... handed)
      : thread_(name, kStopTimeoutMs, std::move(arg), std::forward<Handed>(handed)...) {
    thread_.start();
  }

  std::optional<MediaState> news(int timeoutMs) override {
    auto& queue = newsOf(thread_.job());
    if (!queue.notEmpty().wait(timeoutMs)) return std::nullopt;
    const auto taken = queue.pop();
    if (!taken) return std::nullopt;
    return mediaState(*taken);
  }
  bool hasEnded() const override { return thread_.exitCode() != ThreadBase::kStillActive; }
  void stop() override { thread_.stop(); }

 private:
  static constexpr int kStopTimeoutMs = 5000;

  Thread<Maker, Arg> thread_;
};

using DiskJob = MediaThread<DriveMaker, RInfo>;
using FloppyJob = MediaThread<FloppyMaker, std::string>;

}  // namespace omniset
