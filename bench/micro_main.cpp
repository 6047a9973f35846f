// bench_micro: what a frame, a turn of the event loop and a look at a package cost.
#include <benchmark/benchmark.h>

#include "core/trace.h"

int main(int argc, char** argv) {
  omniset::setTraceSink(nullptr);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
