// The measurements of the window, each beside an empty dialog. A result is a line of words on the
// standard output, for bench/table.py; who was measured is "omniset" or "empty". All raise
// WindowFault.
#pragma once

#include <memory>
#include <string>

#include "tests/win/driver/process.h"
#include "tests/win/show/stage.h"

namespace omniset::bench {

struct WindowBench {
  test::Stage& stage;
  std::string folder;  // the stage's; in the environment of all that this run starts
  std::string emptyProgram;
  int rounds;
};

// "start WHO MS": from the program's start to its complete window. Two starts of each a round.
void measureStarts(const WindowBench& bench);

// "listed N": how many of 300 routers came into the list; then
// "idle announcing|silent WHO PERCENT": processor time, in percent of one processor, while these
// announce themselves each second and while they do not. Two seconds of each a round.
void measureIdleUse(const WindowBench& bench);

// "click quiet|installing WHO MS": 40 clicks of each a round, with nothing installing and while 64
// routers are; then "carried MB/S", what these took meanwhile.
void measureClicks(const WindowBench& bench);

// An empty dialog that is complete.
struct ShownEmptyDialog {
  std::unique_ptr<test::Process> process;
  HWND window;
};
ShownEmptyDialog showEmptyDialog(const WindowBench& bench);

void printResult(const std::string& what, double value);

}  // namespace omniset::bench
