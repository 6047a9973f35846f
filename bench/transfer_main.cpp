// bench_transfer: one side of a transfer between two network namespaces. bench/run starts the
// sides.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <string>

#include "bench/bare_exchange.h"
#include "bench/link_transfer.h"
#include "core/trace.h"

namespace {

using namespace omniset;
using namespace omniset::bench;

struct Options {
  std::string interface;
  std::int64_t bytes = 0;
  std::string folder;
  std::string package;
  std::size_t targets = 1;
};

void runAsk(const Options& options) {
  const double seconds = exchangeRequests(options.interface, options.bytes);
  std::printf("%.3f\n", static_cast<double>(options.bytes) / seconds / 1e6);
}

void runInstall(const Options& options) {
  const TransferResult result =
      installTargets(options.interface, options.folder, options.package, options.targets);
  std::printf("%.3f %ld\n", result.megabytesPerSecond, result.peakKilobytes);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("One side of a measured transfer.");
  app.add_option("--interface", options.interface, "Network interface")->required();
  auto* answer = app.add_subcommand("answer", "Bare exchange: answer requests until ended");
  auto* ask = app.add_subcommand("ask", "Bare exchange: print the rate of requests in MB/s");
  ask->add_option("--bytes", options.bytes, "Payload to carry")->required();
  auto* install = app.add_subcommand(
      "install", "Install targets; print the rate in MB/s and the most resident memory in KiB");
  install->add_option("--packages", options.folder, "Folder of the package")->required();
  install->add_option("--file", options.package, "The package's file name")->required();
  install->add_option("--targets", options.targets, "How many targets to wait for");
  auto* await = app.add_subcommand("await", "Return when a target has announced itself");
  app.require_subcommand(1);
  CLI11_PARSE(app, argc, argv);
  setTraceSink(nullptr);
  try {
    if (*answer) answerRequests(options.interface);
    if (*ask) runAsk(options);
    if (*install) runInstall(options);
    if (*await) awaitAnnouncement(options.interface);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "bench_transfer: %s\n", failure.what());
    return 1;
  }
}
