// A TFTP client that does no more than the protocol asks for, so that what is measured is the
// server.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace omniset::bench {

struct FetchedFile {
  std::vector<std::uint8_t> content;
  double seconds = 0;  // from the request to the acknowledgement of the last block
};

// Fetches a file of at most `mostBytes` from a server on the loopback interface, without options.
// Raises SocketExc, and Failure when the server falls silent or sends what it should not.
FetchedFile fetchFile(std::uint16_t port, const std::string& name, std::size_t mostBytes);

}  // namespace omniset::bench
