// bench_tftp: one side of a measured TFTP transfer over the loopback interface. bench/tftp/run
// starts the sides.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/tftp/bare_blocks.h"
#include "bench/tftp/tftp_fetch.h"
#include "boot/tftp_transfer.h"
#include "cli/stoppable_socket.h"
#include "core/error.h"
#include "core/file.h"
#include "core/ipv4_address.h"
#include "core/sync.h"
#include "core/trace.h"

namespace {

using namespace omniset;
using namespace omniset::bench;

constexpr const char* kLoopback = "lo";

struct Options {
  std::string file;
  std::uint16_t port = kTftpPort;
  std::int64_t bytes = 0;
};

std::vector<std::uint8_t> contentOf(const std::string& path) {
  std::vector<std::uint8_t> content(std::filesystem::file_size(path));
  const FilePtr file = openFile(path, "rb");
  if (!file || std::fread(content.data(), 1, content.size(), file.get()) != content.size()) {
    throw Failure(path + " cannot be read.");
  }
  return content;
}

// As the command line does it, over and over with the same image.
[[noreturn]] void serve(const Options& options) {
  const auto content = contentOf(options.file);
  Event never(true, false);
  TransferPorts ports([] { return std::rand(); });
  TftpServices services;
  services.makeSocket = [&] {
    return std::make_unique<StoppableSocket>(makeUdpSocket(kLoopback), never);
  };
  services.nextPort = [&] { return ports.next(); };
  const auto listening = services.makeSocket();
  listening->open("failed to create TFTP socket");
  listening->bind(options.port, "bind failed");
  for (;;) {
    serveImage(*listening, {content.data(), content.size()}, ipv4(127, 0, 0, 1), services);
  }
}

void fetch(const Options& options) {
  const auto wanted = contentOf(options.file);
  const auto name = std::filesystem::path(options.file).filename().string();
  const FetchedFile got = fetchFile(options.port, name, wanted.size());
  if (got.content != wanted) throw Failure("The server sent another file.");
  std::printf("%.3f\n", static_cast<double>(wanted.size()) / got.seconds / 1e6);
}

void ask(const Options& options) {
  const double seconds = askForBlocks(options.port, options.bytes);
  std::printf("%.3f\n", static_cast<double>(options.bytes) / seconds / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("One side of a measured TFTP transfer on 127.0.0.1.");
  app.add_option("--port", options.port, "Port of the server");
  auto* serving = app.add_subcommand("serve", "Boot service: serve one image until ended");
  serving->add_option("--file", options.file, "The image")->required();
  auto* fetching = app.add_subcommand("fetch", "Fetch a file; print the rate in MB/s");
  fetching->add_option("--file", options.file, "What the server has to send")->required();
  auto* answering = app.add_subcommand("answer", "Bare exchange: answer until ended");
  auto* asking = app.add_subcommand("ask", "Bare exchange: print the rate in MB/s");
  asking->add_option("--bytes", options.bytes, "Payload to carry")->required();
  app.require_subcommand(1);
  CLI11_PARSE(app, argc, argv);
  setTraceSink(nullptr);
  try {
    if (*serving) serve(options);
    if (*fetching) fetch(options);
    if (*answering) answerWithBlocks(options.port);
    if (*asking) ask(options);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "bench_tftp: %s\n", failure.what());
    return 1;
  }
}
