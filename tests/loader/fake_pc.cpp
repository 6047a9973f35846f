#include "fake_pc.h"

#include <algorithm>
#include <cstring>

#include "payload/loader/common/console.h"
#include "payload/loader/common/numbers.h"
#include "payload/loader/common/physical_memory.h"

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
  std::memcpy(pc->memory.data() + to, object, count);
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
    case RomFunction::kTftpOpen:
      open(*static_cast<TftpOpenParameters*>(parameters));
      break;
    case RomFunction::kTftpRead:
      read(*static_cast<TftpReadParameters*>(parameters));
      break;
    case RomFunction::kTftpClose:
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

void FakePc::open(TftpOpenParameters& parameters) {
  opened.push_back(parameters);
  const auto found = files.find(parameters.name.data());
  if (found == files.end()) {
    parameters.status = kFileNotFound;
    return;
  }
  file_ = found->second;
  at_ = 0;
  parameters.packetSize = packetSize;
}

void FakePc::read(TftpReadParameters& parameters) {
  const std::size_t block = packetSize == 0 || packetSize > 512 ? 512 : packetSize;
  if (at_ > file_.size() || (endsWithFailure && at_ == file_.size())) {
    parameters.status = 0x39;
    return;
  }
  const std::size_t count = std::min(block, file_.size() - at_);
  const std::uint32_t to = parameters.segment * 16u + parameters.offset;
  std::copy_n(file_.begin() + static_cast<std::ptrdiff_t>(at_), count, memory.begin() + to);
  parameters.size = static_cast<std::uint16_t>(count + blockGrowth);
  // Behind the short block there is nothing to be read.
  at_ += count < block ? block : count;
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
