// Files from the server, by the boot ROM's TFTP. Each costs exactly one read request: the server
// serves its files in a fixed order, whatever names are asked for. So nothing here asks for a size
// or asks again.
#include "payload/loader/common/boot_file.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/pxe/rom.h"

namespace omniset::loader {
namespace {

constexpr std::uint16_t kBlock = 512;

constexpr std::uint16_t swapped(std::uint16_t value) {
  return static_cast<std::uint16_t>(value << 8 | value >> 8);
}
constexpr std::uint16_t kTftpPort = swapped(69);

TftpOpenParameters file;
bool hasEnded;

const char* fileName() {
  return file.name.data();
}

void requireSuccess(std::uint32_t result, std::uint16_t status) {
  if (result == 0 && status == 0) return;
  if (status == kBadFunction || status == kUnsupported) {
    failWithCode("", "This boot ROM cannot load files by TFTP", status);
  }
  if (status == kFileNotFound) failWithCode("The server does not have ", fileName(), status);
  failWithCode(fileName(), " was not received from the server", status);
}

template <typename Parameters>
void call(RomFunction function, Parameters& parameters) {
  const std::uint32_t result = romCall(function, &parameters);
  requireSuccess(result, parameters.status);
}

// The bytes of one block, to this offset.
std::uint16_t readBlock(std::uint16_t offset) {
  TftpReadParameters parameters;
  parameters.size = file.packetSize;
  parameters.offset = offset;
  parameters.segment = kTransferAt / 16;
  call(RomFunction::kTftpRead, parameters);
  if (parameters.size > file.packetSize) {
    failWithCode(fileName(), " came with a block that is too large", parameters.size);
  }
  return parameters.size;
}

}  // namespace

void openFile(const char* name) {
  file = {};
  for (std::size_t i = 0; name[i] != 0; ++i) file.name[i] = name[i];
  file.server = networkAddresses.server;
  file.gateway = networkAddresses.gateway;
  file.port = kTftpPort;
  file.packetSize = kBlock;
  hasEnded = false;
  call(RomFunction::kTftpOpen, file);
  // A server may answer with smaller blocks than were asked for, never with larger ones: a ROM that
  // tells of such tells what it could take itself.
  if (file.packetSize == 0 || file.packetSize > kBlock) file.packetSize = kBlock;
}

// The block that ends the file is shorter than the others; it may be empty.
std::uint32_t readFile() {
  std::uint32_t filled = 0;
  while (!hasEnded && filled + file.packetSize <= kTransferRoom) {
    const std::uint16_t count = readBlock(static_cast<std::uint16_t>(filled));
    filled += count;
    hasEnded = count < file.packetSize;
  }
  return filled;
}

// The file is here, whatever the ROM says: some have closed it with the last block and fail now.
void closeFile() {
  RomParameters parameters;
  romCall(RomFunction::kTftpClose, &parameters);
}

}  // namespace omniset::loader
