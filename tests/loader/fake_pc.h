// The PC around the loader's portable code: its memory, its console, its boot ROM, and its network.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "fake_server.h"
#include "payload/loader/pxe/rom.h"

namespace omniset::loader::test {

// In place of the restart that follows a failure.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// One at a time: the loader's functions use the one that exists.
class FakePc {
 public:
  explicit FakePc(std::uint32_t memorySize = 0x800000);
  ~FakePc();
  FakePc(const FakePc&) = delete;
  FakePc& operator=(const FakePc&) = delete;

  std::vector<std::uint8_t> memory;
  std::string shown;

  // What the ROM does.
  std::map<RomFunction, std::uint16_t> failures;
  bool returnsNothing = false;  // only the status says what failed
  std::map<PacketType, std::vector<std::uint8_t>> cached;

  std::vector<RomFunction> calls;  // what it was asked for

  FakeServer server;
  bool exchangesDatagrams = false;  // between their opening and their closing

  void put(std::uint32_t at, const std::vector<std::uint8_t>& bytes);
  std::vector<std::uint8_t> bytes(std::uint32_t at, std::size_t count) const;
  std::uint32_t number(std::uint32_t at) const;

  std::uint32_t call(RomFunction function, void* parameters);
  void copy(std::uint32_t to, std::uint32_t from, std::uint32_t count);
  void requireDatagrams() const;

 private:
  void getCached(CachedInfoParameters& parameters);
};

// What failed, as it is shown; empty when nothing did.
std::string failureOf(const std::function<void()>& action);

}  // namespace omniset::loader::test
