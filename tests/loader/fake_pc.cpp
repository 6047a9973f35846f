#include "fake_pc.h"

#include <algorithm>
#include <cstring>

#include "payload/loader/common/console.h"
#include "payload/loader/common/numbers.h"
#include "payload/loader/common/physical_memory.h"
#include "payload/loader/pxe/datagrams.h"

namespace omniset::loader {
namespace {

test::FakePc* pc = nullptr;

std::uint32_t rounded(std::uint32_t count) {
  return (count + 1) & ~1u;
}

}  // namespace

extern "C" {
FarAddress oldStructureAt;
FarAddress newStructureAt;
FarAddress romEntry;

std::uint32_t romCall(RomFunction function, void* parameters) {
  return pc->call(function, parameters);
}
}

void print(const char* text) {
  pc->shown += text;
}
void printNumber(std::uint32_t number) {
  pc->shown += std::to_string(number);
}

void fail(const char* reason) {
  throw test::Failure(reason);
}
void fail(const char* subject, const char* reason) {
  throw test::Failure(std::string(subject) + reason);
}
void failWithCode(const char* subject, const char* reason, std::uint32_t code) {
  throw test::Failure(std::string(subject) + reason + " (code " + std::to_string(code) + ").");
}

void copyMemory(std::uint32_t to, std::uint32_t from, std::uint32_t count) {
  pc->copy(to, from, count);
}

void readMemory(void* object, std::uint32_t from, std::uint32_t count) {
  std::memcpy(object, pc->memory.data() + from, rounded(count));
}

void writeMemory(std::uint32_t to, const void* object, std::uint32_t count) {
  std::memcpy(pc->memory.data() + to, object, rounded(count));
}

void openDatagrams() {
  if (pc->exchangesDatagrams) throw std::logic_error("datagrams are exchanged already");
  pc->exchangesDatagrams = true;
}

void closeDatagrams() {
  pc->requireDatagrams();
  pc->exchangesDatagrams = false;
}

void sendDatagram(std::uint16_t ownPort, std::uint16_t serverPort, const void* bytes,
                  std::uint16_t length) {
  pc->requireDatagrams();
  const auto* first = static_cast<const std::uint8_t*>(bytes);
  pc->server.send({ownPort, serverPort, {first, first + length}});
}

std::uint16_t receiveDatagram(std::uint16_t ownPort, void* bytes, std::uint16_t room,
                              std::uint16_t& serverPort) {
  pc->requireDatagrams();
  const auto datagram = pc->server.receive(ownPort);
  if (!datagram) return 0;
  serverPort = datagram->from;
  std::copy_n(datagram->bytes.begin(), std::min<std::size_t>(room, datagram->bytes.size()),
              static_cast<std::uint8_t*>(bytes));
  return static_cast<std::uint16_t>(datagram->bytes.size());
}

std::uint16_t ticks() {
  return pc->server.ticks();
}

namespace test {

FakePc::FakePc(std::uint32_t memorySize) : memory(memorySize) {
  pc = this;
  oldStructureAt = newStructureAt = romEntry = 0;
  networkAddresses = {};
}

FakePc::~FakePc() {
  pc = nullptr;
}

void FakePc::put(std::uint32_t at, const std::vector<std::uint8_t>& bytes) {
  std::copy(bytes.begin(), bytes.end(), memory.begin() + at);
}

std::vector<std::uint8_t> FakePc::bytes(std::uint32_t at, std::size_t count) const {
  return {memory.begin() + at, memory.begin() + at + static_cast<std::ptrdiff_t>(count)};
}

std::uint32_t FakePc::number(std::uint32_t at) const {
  return numberAt<std::uint32_t>(memory.data() + at);
}

// As the BIOS copies: word after word, upwards.
void FakePc::copy(std::uint32_t to, std::uint32_t from, std::uint32_t count) {
  count = rounded(count);
  if (to + count > memory.size() || from + count > memory.size()) {
    throw std::logic_error("a copy leaves the memory");
  }
  for (std::uint32_t i = 0; i < count; ++i) memory[to + i] = memory[from + i];
}

std::uint32_t FakePc::call(RomFunction function, void* parameters) {
  calls.push_back(function);
  if (const auto failure = failures.find(function); failure != failures.end()) {
    std::memcpy(parameters, &failure->second, sizeof failure->second);
    return returnsNothing ? 0 : 1;
  }
  switch (function) {
    case RomFunction::kShutDownCard:
    case RomFunction::kUnloadStack:
    case RomFunction::kStopCard:
    case RomFunction::kCleanUpCard:
      break;
    case RomFunction::kGetCachedInfo:
      getCached(*static_cast<CachedInfoParameters*>(parameters));
      break;
    default:
      throw std::logic_error("a function that this ROM does not have");
  }
  return returnsNothing ? 0 : numberAt<std::uint16_t>(static_cast<std::uint8_t*>(parameters));
}

void FakePc::requireDatagrams() const {
  if (!exchangesDatagrams) throw std::logic_error("no datagrams are exchanged");
}

void FakePc::getCached(CachedInfoParameters& parameters) {
  const auto found = cached.find(parameters.type);
  if (found == cached.end()) {
    parameters.status = 1;
    return;
  }
  put(parameters.segment * 16u + parameters.offset, found->second);
}

std::string failureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return {};
}

}  // namespace test
}  // namespace omniset::loader
