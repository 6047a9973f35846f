#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "bench/window/processor_time.h"
#include "bench/window/stopwatch.h"
#include "bench/window/window_bench.h"
#include "tests/win/driver/settings_store.h"

namespace omniset::bench {

namespace {

using namespace omniset::test;

constexpr int kRouters = 300;
constexpr int kFewestRouters = 250;
constexpr double kGrowthLimit = 5;  // s
constexpr DWORD kLookMs = 100;
// Rows of silent routers live for a minute.
constexpr int kLongestSilence = 50;  // s
constexpr DWORD kSettleMs = 1500;
constexpr DWORD kSliceMs = 2000;
constexpr int kMostSlices = kLongestSilence * 1000 / static_cast<int>(kSliceMs);

struct Watched {
  std::string who;
  ProcessorTime time;
};

std::string nameOf(const std::string& program) {
  return std::filesystem::path(program).filename().string();
}

// Routers that announce themselves all at once do not all find room in the receive buffer, and it
// is always the same ones that do not: the number that is in the list when it has stopped growing.
int awaitRouters(const DrivenList& list) {
  int listed = 0;
  Stopwatch sinceGrowth;
  while (listed < kRouters && sinceGrowth.seconds() < kGrowthLimit) {
    Sleep(kLookMs);
    const int now = list.count();
    if (now > listed) sinceGrowth = Stopwatch();
    listed = now;
  }
  if (listed < kFewestRouters) throw WindowFault("too few routers are in the list");
  return listed;
}

// Both are idle, so they are watched at the same time.
void measureSlice(const std::string& what, const Watched (&both)[2]) {
  const double before[] = {both[0].time.seconds(), both[1].time.seconds()};
  const Stopwatch watch;
  Sleep(kSliceMs);
  const double taken = watch.seconds();
  for (int i = 0; i < 2; ++i) {
    const double used = both[i].time.seconds() - before[i];
    printResult("idle " + what + " " + both[i].who, used / taken * 100);
  }
}

void measureSlices(const WindowBench& bench, const std::string& what, int routers,
                   const Watched (&both)[2]) {
  Sleep(kSettleMs);
  for (int i = 0; i < std::min(bench.rounds, kMostSlices); ++i) measureSlice(what, both);
  if (bench.stage.window().routers().count() < routers) {
    throw WindowFault("the list did not keep its routers");
  }
}

}  // namespace

void measureIdleUse(const WindowBench& bench) {
  Stage& stage = bench.stage;
  clearSettings();
  storeText("Package Path", stage.path("packages"));
  const ShownEmptyDialog empty = showEmptyDialog(bench);
  stage.open();
  stage.startTarget("crowd", {"--count", std::to_string(kRouters)});
  const int routers = awaitRouters(stage.window().routers());
  printResult("listed", routers);
  const Watched both[] = {{"omniset", {nameOf(stage.program()), bench.folder}},
                          {"empty", {nameOf(bench.emptyProgram), bench.folder}}};
  measureSlices(bench, "announcing", routers, both);
  stage.freezeTarget("crowd");
  measureSlices(bench, "silent", routers, both);
  stage.stopTargets();
  stage.close();
}

}  // namespace omniset::bench
