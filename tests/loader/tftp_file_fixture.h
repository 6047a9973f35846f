// A network boot program's files from a server, and what is on the wire between them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fake_pc.h"
#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/low_memory.h"

namespace omniset::loader::test {

constexpr std::uint16_t kStrangePort = 1234;  // nobody's
constexpr int kPatience = 82;                 // ticks: 4.5 seconds

enum Opcode : std::uint16_t { kRequest = 1, kData = 3, kAcknowledgement = 4, kError = 5 };

// No two files have much in common, nor two blocks of one.
inline Bytes content(std::size_t size, std::size_t file = 0) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<std::uint8_t>(i * 7 + (i >> 8) * 13 + (i >> 16) * 5 + file * 101);
  }
  return bytes;
}

inline std::uint16_t u16(const Bytes& bytes, std::size_t at) {
  return bytes.size() < at + 2 ? std::uint16_t{0}
                               : static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}
inline std::uint16_t opcodeOf(const Datagram& datagram) {
  return u16(datagram.bytes, 0);
}
inline std::uint16_t numberOf(const Datagram& datagram) {
  return u16(datagram.bytes, 2);
}
inline bool isFromPc(const Datagram& datagram) {
  return opcodeOf(datagram) == kRequest || opcodeOf(datagram) == kAcknowledgement;
}
inline bool isShort(const Datagram& datagram) {
  return opcodeOf(datagram) == kData && datagram.bytes.size() < 4 + 512;
}

inline Bytes packet(std::uint16_t opcode, std::uint16_t number, std::size_t size = 0) {
  Bytes bytes(4 + size, 0xEE);
  bytes[0] = static_cast<std::uint8_t>(opcode >> 8);
  bytes[1] = static_cast<std::uint8_t>(opcode);
  bytes[2] = static_cast<std::uint8_t>(number >> 8);
  bytes[3] = static_cast<std::uint8_t>(number);
  return bytes;
}

class TftpFile : public ::testing::Test {
 protected:
  // The file's bytes as they come, one fill of the transfer memory after the other.
  Bytes fetch(const char* name = "linux") {
    Bytes all;
    openFile(name);
    while (const std::uint32_t count = readFile()) {
      EXPECT_LE(count, kTransferRoom);
      const auto first = pc.memory.begin() + kTransferAt;
      all.insert(all.end(), first, first + count);
    }
    closeFile();
    return all;
  }

  Bytes fetchOnly(Bytes image) {
    begin({std::move(image)});
    return fetch();
  }

  void begin(std::vector<Bytes> images) {
    pc.server.serve(std::move(images));
    pc.exchangesDatagrams = false;
  }

  std::string failure() {
    return failureOf([this] { fetch(); });
  }

  const Datagram& sent(std::size_t index) const { return pc.server.sentByPc.at(index).datagram; }

  std::vector<std::uint16_t> acknowledged() const {
    std::vector<std::uint16_t> numbers;
    for (const auto& each : pc.server.sentByPc) {
      if (opcodeOf(each.datagram) == kAcknowledgement) numbers.push_back(numberOf(each.datagram));
    }
    return numbers;
  }

  std::vector<int> requestTicks() const {
    std::vector<int> ticks;
    for (const auto& each : pc.server.sentByPc) {
      if (opcodeOf(each.datagram) == kRequest) ticks.push_back(each.ticks);
    }
    return ticks;
  }

  void loseAllFromPc() {
    pc.server.wire = [](const Datagram& datagram) {
      return isFromPc(datagram) ? Arrivals{} : Arrivals{{0, datagram}};
    };
  }

  // In place of the block of this number.
  void answerWith(Bytes bytes, std::uint16_t number = 1) {
    pc.server.wire = [bytes = std::move(bytes), number](const Datagram& datagram) {
      Arrivals arrivals{{0, datagram}};
      if (!isFromPc(datagram) && numberOf(datagram) == number) arrivals[0].datagram.bytes = bytes;
      return arrivals;
    };
  }

  FakePc pc;
};

}  // namespace omniset::loader::test
