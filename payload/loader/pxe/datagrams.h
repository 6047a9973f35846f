// UDP datagrams between this PC and its server, by the boot ROM.
#pragma once

#include <cstdint>

namespace omniset::loader {

// Fails when the boot ROM cannot exchange datagrams.
void openDatagrams();
void closeDatagrams();

// One that the ROM does not send is as good as lost on the way.
void sendDatagram(std::uint16_t ownPort, std::uint16_t serverPort, const void* bytes,
                  std::uint16_t length);

// Takes a datagram that the server has sent to this port, if there is one; the rest of a longer one
// is lost. `bytes` has room for that many. Returns its whole length: 0 when there is none.
std::uint16_t receiveDatagram(std::uint16_t ownPort, void* bytes, std::uint16_t room,
                              std::uint16_t& serverPort);

// The low half of the PC's clock: 18.2 a second.
std::uint16_t ticks();

}  // namespace omniset::loader
