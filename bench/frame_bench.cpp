#include <benchmark/benchmark.h>

#include "link/link_frame.h"
#include "link/link_protocol.h"

namespace omniset {
namespace {

constexpr MacAddress kOurs{{2, 0, 0, 0, 0, 1}};
constexpr MacAddress kTheirs{{2, 0, 0, 0, 0, 2}};

LinkConnection connect(const MacAddress& local, const MacAddress& peer) {
  LinkConnection connection;
  connection.local = local;
  connection.peer = peer;
  return connection;
}

void BuildFrame(benchmark::State& state) {
  const LinkConnection connection = connect(kOurs, kTheirs);
  LinkFrame frame;
  for (auto _ : state) {
    makeHeader(connection, frame, kChunkLength, false, kDataChannel);
    benchmark::DoNotOptimize(frame);
  }
}
BENCHMARK(BuildFrame);

// The installer's side: a pure acknowledgement of the frame sent last.
void AcceptAcknowledgement(benchmark::State& state) {
  LinkConnection connection = connect(kOurs, kTheirs);
  LinkFrame frame;
  makeHeader(connect(kTheirs, kOurs), frame, 0, true, kControlChannel);
  for (auto _ : state) {
    const bool accepted = acceptFrame(connection, frame, kFrameHeaderLength);
    if (!accepted) state.SkipWithError("the frame was refused");
    benchmark::DoNotOptimize(frame);
  }
}
BENCHMARK(AcceptAcknowledgement);

// The target's side: a chunk with the next number, again and again.
void AcceptChunk(benchmark::State& state) {
  LinkConnection connection = connect(kOurs, kTheirs);
  LinkFrame frame;
  makeHeader(connect(kTheirs, kOurs), frame, kChunkLength, false, kDataChannel);
  for (auto _ : state) {
    connection.acknowledgement = 0;
    const bool accepted = acceptFrame(connection, frame, kFrameHeaderLength + kChunkLength);
    if (!accepted) state.SkipWithError("the frame was refused");
    benchmark::DoNotOptimize(frame);
  }
}
BENCHMARK(AcceptChunk);

}  // namespace
}  // namespace omniset
