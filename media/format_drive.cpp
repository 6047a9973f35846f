#include "media/format_drive.h"

#include <algorithm>

#include "core/error.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr int kFormatLimitMs = 300'000;
constexpr int kSliceMs = 250;
// So much of the command's output is traced, of its first words and of what follows.
constexpr std::size_t kMostOutput = 8196;
constexpr std::size_t kMostTraced = 2 * kMostOutput;

class FormatRun {
 public:
  FormatRun(FormatProcess& process, Event& stopEvent) : process_(process), stopEvent_(stopEvent) {}

  // The command's first prompt wants a key, its last question whether there is another disk. What
  // it does not take it did not ask for.
  void answer() {
    process_.feed("\r\n");
    process_.feed("n\r\n");
  }

  void awaitEnd() {
    for (int waited = 0; waited < kFormatLimitMs; waited += kSliceMs) {
      const FormatProcess::Wait state = process_.wait(kSliceMs);
      traceOutput();
      if (state == FormatProcess::Wait::kFailed) throw Failure("Format failed");
      if (state == FormatProcess::Wait::kEnded) return;
      if (stopEvent_.wait(0)) end("Canceled");
    }
    traceLine("format timeout");
    end("Format timeout");
  }

 private:
  // A command that nobody listens to would wait for a reader once its pipe is full.
  void traceOutput() {
    while (true) {
      const std::string output = process_.output(kMostOutput);
      if (output.empty()) return;
      const std::size_t kept = std::min(output.size(), kMostTraced - traced_);
      trace(output.substr(0, kept));
      traced_ += kept;
    }
  }

  [[noreturn]] void end(const char* reason) {
    if (!process_.terminate()) throw Error("TerminateProcess");
    throw Failure(reason);
  }

  FormatProcess& process_;
  Event& stopEvent_;
  std::size_t traced_ = 0;
};

}  // namespace

void formatDrive(const MediaServices& services, char letter, Event& stopEvent) {
  const FormatLine line = services.format->line(letter);
  traceLine("app: " + line.program);
  traceLine("cmd: " + line.commandLine);
  const auto process = services.format->start(line);
  traceLine("format before");
  FormatRun run(*process, stopEvent);
  run.answer();
  run.awaitEnd();
  traceLine("format done");
  if (!process->close()) throw Failure("Closing device failed");
}

void formatDriveForGood(const MediaServices& services, char letter, Event& stopEvent) {
  formatDrive(services, letter, stopEvent);
  const SystemVersion version = services.volumes->version();
  if (version.isNt && version.major == 5 && (version.minor == 1 || version.minor == 2)) {
    formatDrive(services, letter, stopEvent);
  }
}

}  // namespace omniset
