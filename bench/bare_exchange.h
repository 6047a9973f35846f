// The yardstick of the install link: a request and its answer in broadcast datagrams of the sizes
// of a chunk and of its acknowledgement, over the same path and with the same socket options, and
// nothing else.
#pragma once

#include <cstdint>
#include <string>

namespace omniset::bench {

constexpr std::uint16_t kBarePort = 5001;

// Answers requests until the process is ended. Raises SocketExc.
[[noreturn]] void answerRequests(const std::string& interfaceName);

// Sends requests, each once the one before is answered, until they have carried `payloadBytes`.
// Returns the seconds that it took. Raises SocketExc.
double exchangeRequests(const std::string& interfaceName, std::int64_t payloadBytes);

}  // namespace omniset::bench
