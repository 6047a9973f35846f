#include "payload/loader/pxe/datagrams.h"

#include "payload/loader/bios/bios.h"
#include "payload/loader/common/console.h"
#include "payload/loader/pxe/rom.h"

namespace omniset::loader {
namespace {

constexpr std::uint16_t swapped(std::uint16_t value) {
  return static_cast<std::uint16_t>(value << 8 | value >> 8);
}

}  // namespace

void openDatagrams() {
  UdpOpenParameters parameters;
  parameters.own = networkAddresses.own;
  if (romCall(RomFunction::kUdpOpen, &parameters) != 0 || parameters.status != 0) {
    failWithCode("", "This boot ROM cannot exchange datagrams (UDP)", parameters.status);
  }
}

void closeDatagrams() {
  RomParameters parameters;
  romCall(RomFunction::kUdpClose, &parameters);
}

void sendDatagram(std::uint16_t ownPort, std::uint16_t serverPort, const void* bytes,
                  std::uint16_t length) {
  UdpWriteParameters parameters;
  parameters.server = networkAddresses.server;
  parameters.gateway = networkAddresses.gateway;
  parameters.ownPort = swapped(ownPort);
  parameters.serverPort = swapped(serverPort);
  parameters.length = length;
  parameters.offset = static_cast<std::uint16_t>(offsetOf(bytes));
  romCall(RomFunction::kUdpWrite, &parameters);
}

std::uint16_t receiveDatagram(std::uint16_t ownPort, void* bytes, std::uint16_t room,
                              std::uint16_t& serverPort) {
  UdpReadParameters parameters;
  parameters.own = networkAddresses.own;
  parameters.ownPort = swapped(ownPort);
  parameters.length = room;
  parameters.offset = static_cast<std::uint16_t>(offsetOf(bytes));
  if (romCall(RomFunction::kUdpRead, &parameters) != 0 || parameters.status != 0) return 0;
  if (parameters.server != networkAddresses.server) return 0;
  serverPort = swapped(parameters.serverPort);
  return parameters.length;
}

std::uint16_t ticks() {
  return biosTicks;
}

}  // namespace omniset::loader
