// Reads a package from memory.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "core/error.h"
#include "packages/package_reader.h"

namespace omniset::test {

class MemoryReader : public GenericReader {
 public:
  // The bytes are the caller's and outlive the reader.
  MemoryReader(std::uint32_t magic, std::span<const std::uint8_t> bytes)
      : GenericReader(magic), bytes_(bytes) {}
  MemoryReader(std::uint32_t magic, std::string_view bytes)
      : MemoryReader(
            magic, std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size())) {}

  // How far the stream has been moved along.
  std::uint64_t position() const { return at_; }

 protected:
  void readBytes(std::uint8_t* buffer, std::size_t n) override {
    if (at_ > bytes_.size() || n > bytes_.size() - at_) throw BadFile("read error");
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), n, buffer);
    at_ += n;
  }

  // Like a file, it can be moved to beyond its end.
  void skipBytes(std::uint64_t n) override { at_ += n; }

 private:
  std::span<const std::uint8_t> bytes_;
  std::uint64_t at_ = 0;
};

}  // namespace omniset::test
