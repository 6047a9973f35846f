#include <windows.h>

#include "bench/window/empty_dialog_ids.h"
#include "bench/window/stopwatch.h"
#include "bench/window/window_bench.h"
#include "resources/resource_ids.h"
#include "tests/win/driver/settings_store.h"

namespace omniset::bench {

namespace {

using namespace omniset::test;

constexpr int kStartsPerRound = 2;
constexpr char kDialogClass[] = "#32770";
constexpr DWORD kPauseMs = 1;

struct Program {
  std::string who;
  std::string file;
  const char* caption;
  int lastControl;
};

bool isComplete(const Process& process, const Program& program) {
  const HWND window = FindWindowA(kDialogClass, program.caption);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  return owner == process.id() && IsWindowVisible(GetDlgItem(window, program.lastControl));
}

// A visible control is one whose windows around it are visible too. The program ends as in a crash:
// nothing of its end reaches into the next start.
double startOnce(const WindowBench& bench, const Program& program) {
  const std::string output = bench.stage.path(program.who + "-start.txt");
  const Stopwatch watch;
  const Process process(program.file, output);
  while (!isComplete(process, program)) {
    if (!process.isRunning()) throw WindowFault(program.file + " ended before it was seen");
    if (watch.milliseconds() > kPatience.count()) throw WindowFault(program.file + " is not seen");
    Sleep(kPauseMs);
  }
  return watch.milliseconds();
}

}  // namespace

// The first start of each brings its files into memory and is not counted.
void measureStarts(const WindowBench& bench) {
  clearSettings();
  storeText("Package Path", bench.stage.path("packages"));
  const Program programs[] = {
      {"omniset", bench.stage.program(), kMainCaption, IDC_PACKAGES},
      {"empty", bench.emptyProgram, EMPTY_CAPTION, IDC_EMPTY_BUTTON},
  };
  for (int i = 0; i <= bench.rounds * kStartsPerRound; ++i) {
    for (const Program& program : programs) {
      const double taken = startOnce(bench, program);
      if (i > 0) printResult("start " + program.who, taken);
    }
  }
}

}  // namespace omniset::bench
