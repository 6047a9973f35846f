// The yardstick of the boot service: datagrams of the sizes of a block and of its acknowledgement,
// each sent once the other has come, through sockets that wait in their calls, and nothing else.
#pragma once

#include <cstdint>

namespace omniset::bench {

// Answers each datagram with one of a block's size until the process is ended. Raises SocketExc.
[[noreturn]] void answerWithBlocks(std::uint16_t port);

// Asks for blocks until they have carried `payloadBytes`. Returns the seconds that it took. Raises
// SocketExc, and Failure when a datagram does not come.
double askForBlocks(std::uint16_t port, std::int64_t payloadBytes);

}  // namespace omniset::bench
