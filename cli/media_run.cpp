#include "cli/media_run.h"

#include <memory>
#include <optional>
#include <utility>

#include "cli/exit_status.h"
#include "cli/json_lines.h"
#include "cli/media_progress.h"
#include "cli/terminal.h"
#include "core/interrupt.h"

namespace omniset {

namespace {

constexpr int kPollMs = 100;

MediaOutcome outcomeOf(const MediaState& last, bool isStopped) {
  if (last.isFinished) return {.isDone = true, .isCanceled = false, .text = last.text};
  // What a job says that is stopped while a program runs for it would not tell the reason: Ctrl-C
  // ends that program, too.
  if (isStopped) return {.isDone = false, .isCanceled = true, .text = "Canceled"};
  return {.isDone = false, .isCanceled = false, .text = last.text};
}

std::unique_ptr<MediaListener> makeDisplay(const MediaShow& show, std::ostream& err) {
  if (mayRedraw(show.json, show.trace)) {
    return std::make_unique<LiveMedia>(err, show.device, standardErrorTerminal);
  }
  return std::make_unique<PlainMedia>(err, show.device);
}

std::unique_ptr<MediaListener> makeData(const MediaShow& show, std::ostream& out) {
  if (show.json) return std::make_unique<JsonMediaEvents>(out, show.device);
  return std::make_unique<MediaResultLine>(out, show.device);
}

std::string summary(const MediaShow& show, const MediaOutcome& outcome) {
  const std::string medium = std::string("The ") + show.medium;
  if (outcome.isDone) return medium + " is ready. " + show.whatToDo;
  if (outcome.isCanceled) return "Canceled. " + medium + " is not usable; run the command again.";
  return medium + " is not usable: mend what failed and run the command again. --trace shows more.";
}

}  // namespace

MediaOutcome followMedia(MediaJob& job, const std::vector<MediaListener*>& listeners,
                         const Clock& clock, const std::function<bool()>& isInterrupted) {
  MediaState last;
  bool isTold = true;  // the last state; that of a job that has ended is its outcome
  bool isStopped = false;
  for (;;) {
    const bool hadEnded = job.hasEnded();
    auto news = job.news(hadEnded ? 0 : kPollMs);
    if (!isTold && (news || !job.hasEnded())) {
      for (MediaListener* each : listeners) each->changed(last);
      isTold = true;
    }
    if (news) {
      last = std::move(*news);
      isTold = false;
    }
    if (hadEnded || (isStopped && !news)) break;
    for (MediaListener* each : listeners) each->tick(clock.now());
    if (isStopped || !isInterrupted()) continue;
    isStopped = true;
    job.stop();
  }
  MediaOutcome outcome = outcomeOf(last, isStopped);
  for (MediaListener* each : listeners) each->ended(outcome);
  return outcome;
}

int showMedia(MediaJob& job, const MediaShow& show, const Console& console) {
  // The display first: it clears the terminal for what the data writes.
  const auto display = makeDisplay(show, console.err);
  const auto data = makeData(show, console.out);
  const MediaOutcome outcome = followMedia(job, {display.get(), data.get()}, SystemClock(),
                                           [] { return InterruptGuard::requested(); });
  console.err << summary(show, outcome) << std::endl;
  return outcome.isDone ? kExitDone : kExitFailed;
}

}  // namespace omniset
