// The PC around the loader's portable code: its memory, its console, and its boot ROM with files.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

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
  std::map<std::string, std::vector<std::uint8_t>> files;
  std::uint16_t packetSize = 512;  // told by the opening of a file
  std::uint16_t blockGrowth = 0;   // blocks are told to have so many bytes more
  bool endsWithFailure = false;    // reading behind the last block fails
  std::map<RomFunction, std::uint16_t> failures;
  bool returnsNothing = false;  // only the status says what failed
  std::map<PacketType, std::vector<std::uint8_t>> cached;

  // What it was asked for.
  std::vector<RomFunction> calls;
  std::vector<TftpOpenParameters> opened;

  void put(std::uint32_t at, const std::vector<std::uint8_t>& bytes);
  std::vector<std::uint8_t> bytes(std::uint32_t at, std::size_t count) const;
  std::uint32_t number(std::uint32_t at) const;

  std::uint32_t call(RomFunction function, void* parameters);
  void copy(std::uint32_t to, std::uint32_t from, std::uint32_t count);

 private:
  void open(TftpOpenParameters& parameters);
  void read(TftpReadParameters& parameters);
  void getCached(CachedInfoParameters& parameters);

  std::vector<std::uint8_t> file_;
  std::size_t at_ = 0;
};

// What failed, as it is shown; empty when nothing did.
std::string failureOf(const std::function<void()>& action);

}  // namespace omniset::loader::test
