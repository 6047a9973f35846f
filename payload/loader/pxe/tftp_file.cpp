// Files from the server by TFTP (RFC 1350). The server serves its files in a fixed order, whatever
// names are asked for: each request that it hears costs a file. So none asks for a size, and a
// request is repeated only when the server cannot have heard it. The boot ROM has a TFTP of its
// own, which is not used: it may repeat a request after a quarter of a second, or give a file up
// when a block comes twice.
#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/numbers.h"
#include "payload/loader/common/physical_memory.h"
#include "payload/loader/pxe/datagrams.h"

namespace omniset::loader {
namespace {

constexpr std::uint16_t kRequestPort = 69;
constexpr std::uint16_t kFirstOwnPort = 0xC000;

enum Opcode : std::uint16_t { kReadRequest = 1, kData = 3, kAcknowledgement = 4, kError = 5 };
constexpr std::uint16_t kFileNotFound = 1;

constexpr std::uint16_t kHead = sizeof(std::uint32_t);  // of a datagram, before a block's bytes
constexpr std::uint16_t kBlock = 512;

// In ticks, 4.5 seconds. A server that has heard the request says so every second, five times; then
// it has given up.
constexpr std::uint16_t kPatience = 82;
constexpr int kTries = 4;

// Blocks come to where they belong, the head over the last bytes of the block before.
constexpr std::uint16_t kGathered = 8192;
static_assert(kTransferRoom % kGathered == 0 && kGathered % kBlock == 0);
std::array<std::uint8_t, kHead + kGathered> gathered;

struct Transfer {
  const char* name = nullptr;
  std::uint16_t serverPort = 0;  // 0: the server has not answered yet
  std::uint16_t next = 1;        // the block that is awaited
  bool hasEnded = false;
};
Transfer file;
std::uint16_t ownPort;  // of this file; the next one has another

void put(std::uint8_t* bytes, std::uint16_t value) {
  bytes[0] = static_cast<std::uint8_t>(value >> 8);
  bytes[1] = static_cast<std::uint8_t>(value);
}

std::uint16_t u16(const std::uint8_t* bytes) {
  return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

void sendRequest() {
  constexpr char kMode[] = "octet";
  std::array<std::uint8_t, 2 + sizeof(FileName) + sizeof kMode> request;
  put(request.data(), kReadRequest);
  std::uint16_t length = 2;
  for (const char* text : {file.name, kMode}) {
    do {
      request[length++] = static_cast<std::uint8_t>(*text);
    } while (*text++ != 0);
  }
  sendDatagram(ownPort, kRequestPort, request.data(), length);
}

void acknowledge(std::uint16_t block) {
  std::array<std::uint8_t, 4> acknowledgement;
  put(acknowledgement.data(), kAcknowledgement);
  put(&acknowledgement[2], block);
  sendDatagram(ownPort, file.serverPort, acknowledgement.data(), acknowledgement.size());
}

void sendAgain() {
  if (file.serverPort == 0) {
    sendRequest();
  } else {
    acknowledge(static_cast<std::uint16_t>(file.next - 1));
  }
}

[[noreturn]] void failByServer(std::uint16_t code) {
  if (code == kFileNotFound) fail(file.name, " was not received: the server does not have it.");
  failWithCode(file.name, " was not received: the server refuses it", code);
}

[[noreturn]] void failBySilence() {
  if (file.serverPort == 0) fail(file.name, " was not received: the server does not answer.");
  fail(file.name, " was not received: the server fell silent.");
}

// True when this is the block that is awaited. One that comes again was acknowledged in vain.
bool takeIfNext(const std::uint8_t* datagram, std::uint16_t length, std::uint16_t serverPort) {
  if (length < kHead || length > kHead + kBlock) return false;
  if (serverPort == 0) return false;
  if (file.serverPort != 0 && file.serverPort != serverPort) return false;
  const std::uint16_t number = u16(datagram + 2);
  if (u16(datagram) == kError) failByServer(number);
  if (u16(datagram) != kData) return false;
  if (number == file.next) {
    file.serverPort = serverPort;
    return true;
  }
  if (file.serverPort != 0 && number == static_cast<std::uint16_t>(file.next - 1)) {
    acknowledge(number);
  }
  return false;
}

// The next block with its head at `place`; returns the number of its bytes, or kNothing.
constexpr std::uint16_t kNothing = 0xFFFF;
std::uint16_t awaitBlock(std::uint8_t* place) {
  std::uint16_t last = ticks();
  for (std::uint16_t passed = 0; passed < kPatience;) {
    std::uint16_t serverPort = 0;
    const std::uint16_t length = receiveDatagram(ownPort, place, kHead + kBlock, serverPort);
    if (takeIfNext(place, length, serverPort)) return static_cast<std::uint16_t>(length - kHead);
    if (ticks() == last) continue;
    last = ticks();
    ++passed;
  }
  return kNothing;
}

std::uint16_t receiveBlock(std::uint8_t* place) {
  for (int tries = kTries; tries > 0; --tries) {
    const std::uint16_t count = awaitBlock(place);
    if (count != kNothing) return count;
    if (tries > 1) sendAgain();
  }
  failBySilence();
}

// The block that ends the file is shorter than the others; it may be empty.
std::uint16_t gatherBlocks() {
  std::uint16_t count = 0;
  while (!file.hasEnded && count < kGathered) {
    std::uint8_t* const place = &gathered[count];
    const auto before = numberAt<std::uint32_t>(place);
    const std::uint16_t length = receiveBlock(place);
    putNumber(place, before);
    acknowledge(file.next++);
    count = static_cast<std::uint16_t>(count + length);
    file.hasEnded = length < kBlock;
  }
  return count;
}

}  // namespace

void openFile(const char* name) {
  // Not that of the file before, nor, most likely, one from before a restart.
  ownPort = static_cast<std::uint16_t>(kFirstOwnPort | (ownPort == 0 ? ticks() * 8 : ownPort + 1));
  file = {};
  file.name = name;
  openDatagrams();
  sendRequest();
}

std::uint32_t readFile() {
  std::uint32_t filled = 0;
  while (!file.hasEnded && filled < kTransferRoom) {
    const std::uint16_t count = gatherBlocks();
    writeMemory(kTransferAt + filled, gathered.data() + kHead, count);
    filled += count;
  }
  return filled;
}

void closeFile() {
  closeDatagrams();
}

}  // namespace omniset::loader
