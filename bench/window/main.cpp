// Measures the window, for bench/window/run.
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/window/empty_dialog_ids.h"
#include "bench/window/window_bench.h"
#include "tests/win/driver/top_windows.h"

namespace omniset::bench {

ShownEmptyDialog showEmptyDialog(const WindowBench& bench) {
  ShownEmptyDialog shown;
  shown.process =
      std::make_unique<test::Process>(bench.emptyProgram, bench.stage.path("empty.txt"));
  shown.window = test::awaitTopWindow(*shown.process, EMPTY_CAPTION);
  return shown;
}

void printResult(const std::string& what, double value) {
  std::printf("%s %.4f\n", what.c_str(), value);
}

}  // namespace omniset::bench

int main(int argc, char** argv) {
  using namespace omniset;
  const int rounds = argc == 3 ? std::atoi(argv[2]) : 0;
  if (rounds < 1) {
    std::puts("Usage: window_bench EMPTY_DIALOG ROUNDS");
    return 2;
  }
  try {
    test::Stage stage;
    const bench::WindowBench bench{stage, std::getenv("OMNISET_TEST_FOLDER"), argv[1], rounds};
    measureStarts(bench);
    measureIdleUse(bench);
    measureClicks(bench);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
