// Answers the network boot program's requests for files with any datagrams. Nothing outside of its
// buffers is touched, a file is made of the blocks that were acknowledged and of no others, a
// request is not repeated once it was answered, and all comes to an end.
// Input: steps, each a byte: 0 for silence (another byte tells how many ticks), 1 for blocks as
// they are awaited (another byte: how many), 2 for the awaited block of another length (two bytes:
// which), 3 for the block before; for others the bytes of a datagram follow: their number (two
// bytes) and themselves. The step's upper half then is the port that it comes from. Behind all is
// silence.
#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz_input.h"
#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/physical_memory.h"
#include "payload/loader/pxe/datagrams.h"

namespace {

using namespace omniset::loader;
using omniset::fuzz::FuzzInput;
using omniset::fuzz::require;

struct Failed {};
using Bytes = std::vector<std::uint8_t>;

constexpr char kName[] = "linux";
constexpr std::uint16_t kFirstPort = 40'000;  // of the server
constexpr std::size_t kBlock = 512;
constexpr std::size_t kMostLength = 2000;
constexpr int kMostBlocks = 400;  // more than three fills of the transfer memory
constexpr int kMostRequests = 4;

Bytes withHead(std::uint16_t opcode, std::uint16_t number) {
  return {static_cast<std::uint8_t>(opcode >> 8), static_cast<std::uint8_t>(opcode),
          static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

std::uint16_t u16(const Bytes& bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

// What the server sends, and what the program does about it.
class Exchange {
 public:
  explicit Exchange(FuzzInput& input) : input_(input) {}

  void open() {
    require(!isOpen_);
    isOpen_ = true;
    expected_.clear();
    next_ = 1;
    ownPort_ = serverPort_ = 0;
    requests_ = 0;
    hasEnded_ = false;
  }
  void close() {
    require(isOpen_);
    isOpen_ = false;
  }

  void heard(std::uint16_t ownPort, std::uint16_t to, const Bytes& bytes) {
    require(isOpen_ && ownPort >= 0xC000);
    if (requests_ == 0) {
      require(ownPort != lastPort_);
      ownPort_ = lastPort_ = ownPort;
    }
    require(ownPort == ownPort_ && bytes.size() >= 4);
    if (to == 69) {
      heardRequest(bytes);
    } else {
      heardAcknowledgement(to, bytes);
    }
  }

  std::uint16_t answer(std::uint16_t ownPort, std::uint8_t* to, std::uint16_t room,
                       std::uint16_t& port) {
    require(isOpen_ && ownPort == ownPort_);
    if (!makeAnswer()) {
      ++ticks;
      return 0;
    }
    port = answerPort_;
    std::copy_n(answer_.begin(), std::min<std::size_t>(room, answer_.size()), to);
    return static_cast<std::uint16_t>(answer_.size());
  }

  void store(std::uint32_t at, const std::uint8_t* bytes, std::uint32_t count) {
    count = (count + 1) & ~1u;
    require(at >= kTransferAt && count <= kTransferRoom);
    require(at - kTransferAt + count <= kTransferRoom);
    std::copy_n(bytes, count, transfer_.begin() + (at - kTransferAt));
  }

  // These are the file's next bytes.
  void check(std::uint32_t count) {
    require(count <= kTransferRoom && count <= expected_.size());
    require(std::equal(expected_.begin(), expected_.begin() + count, transfer_.begin()));
    expected_.erase(expected_.begin(), expected_.begin() + count);
    require(expected_.empty());
    require(hasEnded_ || count == kTransferRoom);
  }

  std::uint16_t ticks = 0;

 private:
  void heardRequest(const Bytes& bytes) {
    const std::string_view text("\0\1linux\0octet\0", 14);
    require(serverPort_ == 0 && ++requests_ <= kMostRequests);
    require(std::equal(bytes.begin(), bytes.end(), text.begin(), text.end()));
  }

  void heardAcknowledgement(std::uint16_t to, const Bytes& bytes) {
    require(bytes.size() == 4 && u16(bytes, 0) == 4);
    if (u16(bytes, 2) == next_) {
      takeBlock(to);
    } else {
      require(serverPort_ != 0 && u16(bytes, 2) == static_cast<std::uint16_t>(next_ - 1));
    }
    require(to == serverPort_);
  }

  // What was sent last is the block that is acknowledged for the first time.
  void takeBlock(std::uint16_t from) {
    require(!hasEnded_ && from == answerPort_ && (serverPort_ == 0 || from == serverPort_));
    require(answer_.size() >= 4 && answer_.size() <= 4 + kBlock);
    require(u16(answer_, 0) == 3 && u16(answer_, 2) == next_);
    serverPort_ = from;
    ++next_;
    expected_.insert(expected_.end(), answer_.begin() + 4, answer_.end());
    hasEnded_ = answer_.size() < 4 + kBlock;
  }

  // False when nothing is there.
  bool makeAnswer() {
    if (silence_ > 0) {
      --silence_;
      return false;
    }
    if (blocks_ > 0) {
      --blocks_;
      return makeBlock(next_, kBlock);
    }
    if (input_.left() == 0) return false;
    const std::uint8_t step = input_.u8();
    switch (step) {
      case 0:
        silence_ = input_.u8();
        return false;
      case 1:
        blocks_ = std::min<int>(input_.u8(), kMostBlocks - made_);
        return makeBlock(next_, kBlock);
      case 2:
        return makeBlock(next_, input_.u16() % (kBlock + 3));
      case 3:
        return makeBlock(static_cast<std::uint16_t>(next_ - 1), kBlock);
      default:
        return makeAny(step);
    }
  }

  bool makeBlock(std::uint16_t number, std::size_t length) {
    ++made_;
    answer_ = withHead(3, number);
    for (std::size_t i = 0; i < length; ++i) {
      answer_.push_back(static_cast<std::uint8_t>(made_ * 31 + i));
    }
    answerPort_ = serverPort_ != 0 ? serverPort_ : kFirstPort;
    return true;
  }

  bool makeAny(std::uint8_t step) {
    const auto bytes = input_.bytes(std::min<std::size_t>(input_.u16(), kMostLength));
    answer_.assign(bytes.begin(), bytes.end());
    answerPort_ = static_cast<std::uint16_t>(kFirstPort + (step >> 4));
    return true;
  }

  FuzzInput& input_;
  bool isOpen_ = false;
  static inline std::uint16_t lastPort_ = 0;  // of the file before
  std::uint16_t ownPort_ = 0;
  std::uint16_t serverPort_ = 0;
  int requests_ = 0;
  std::uint16_t next_ = 1;
  bool hasEnded_ = false;
  Bytes expected_;  // acknowledged, and not read yet
  Bytes transfer_ = Bytes(kTransferRoom);

  Bytes answer_;
  std::uint16_t answerPort_ = 0;
  int silence_ = 0;
  int blocks_ = 0;
  int made_ = 0;
};

Exchange* exchange;

}  // namespace

namespace omniset::loader {

void fail(const char*) {
  throw Failed();
}
void fail(const char*, const char*) {
  throw Failed();
}
void failWithCode(const char* subject, const char*, std::uint32_t) {
  require(std::strcmp(subject, kName) == 0);
  throw Failed();
}

void writeMemory(std::uint32_t to, const void* object, std::uint32_t count) {
  exchange->store(to, static_cast<const std::uint8_t*>(object), count);
}

void openDatagrams() {
  exchange->open();
}
void closeDatagrams() {
  exchange->close();
}
void sendDatagram(std::uint16_t ownPort, std::uint16_t serverPort, const void* bytes,
                  std::uint16_t length) {
  const auto* first = static_cast<const std::uint8_t*>(bytes);
  exchange->heard(ownPort, serverPort, {first, first + length});
}
std::uint16_t receiveDatagram(std::uint16_t ownPort, void* bytes, std::uint16_t room,
                              std::uint16_t& serverPort) {
  return exchange->answer(ownPort, static_cast<std::uint8_t*>(bytes), room, serverPort);
}
std::uint16_t ticks() {
  return exchange->ticks;
}

}  // namespace omniset::loader

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  Exchange current(input);
  exchange = &current;
  try {
    for (int file = 0; file < 2; ++file) {
      openFile(kName);
      std::uint32_t count = 0;
      do {
        count = readFile();
        current.check(count);
      } while (count > 0);
      closeFile();
    }
  } catch (const Failed&) {
    return 0;
  }
  return 0;
}
