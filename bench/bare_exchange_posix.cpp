#include "bench/bare_exchange.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstring>

#include "core/error.h"
#include "link/link_frame.h"

namespace omniset::bench {

namespace {

constexpr std::size_t kRequestLength = kFrameHeaderLength + kChunkLength;
constexpr std::size_t kAnswerLength = kFrameHeaderLength;
constexpr char kRequest = 'q';
constexpr char kAnswer = 'a';

// The first bytes of a datagram: what it is, and which request it belongs to.
struct Mark {
  char kind;
  std::uint32_t number;
};

using Datagram = std::array<char, 4096>;

int openSocket(const std::string& interfaceName) {
  const int s = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (s < 0) throw SocketExc("socket() failed");
  const int yes = 1;
  sockaddr_in any{};
  any.sin_family = AF_INET;
  any.sin_port = htons(kBarePort);
  const auto nameLength = static_cast<socklen_t>(interfaceName.size());
  if (setsockopt(s, SOL_SOCKET, SO_BINDTODEVICE, interfaceName.c_str(), nameLength) < 0 ||
      setsockopt(s, SOL_SOCKET, SO_BROADCAST, &yes, sizeof yes) < 0 ||
      bind(s, reinterpret_cast<const sockaddr*>(&any), sizeof any) < 0) {
    throw SocketExc("the socket could not be set up");
  }
  return s;
}

void broadcast(int s, const Datagram& bytes, std::size_t length) {
  sockaddr_in all{};
  all.sin_family = AF_INET;
  all.sin_port = htons(kBarePort);
  all.sin_addr.s_addr = INADDR_BROADCAST;
  if (sendto(s, bytes.data(), length, 0, reinterpret_cast<const sockaddr*>(&all), sizeof all) < 0) {
    throw SocketExc("sendto() failed");
  }
}

// Waits at most a second; false when nothing came.
bool receive(int s, Datagram& bytes, std::size_t& length) {
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(s, &readable);
  timeval limit{1, 0};
  const int ready = select(s + 1, &readable, nullptr, nullptr, &limit);
  if (ready < 0) throw SocketExc("select() failed");
  if (ready == 0) return false;
  sockaddr_in from{};
  socklen_t fromLength = sizeof from;
  const ssize_t received =
      recvfrom(s, bytes.data(), bytes.size(), 0, reinterpret_cast<sockaddr*>(&from), &fromLength);
  if (received < 0) throw SocketExc("recvfrom() failed");
  length = static_cast<std::size_t>(received);
  return from.sin_port == htons(kBarePort);
}

// What came, or a mark of no kind; one's own datagrams come back and are of the other kind.
Mark receiveMark(int s, Datagram& bytes, std::size_t wantedLength) {
  Mark mark{};
  std::size_t length = 0;
  if (receive(s, bytes, length) && length == wantedLength) {
    std::memcpy(&mark, bytes.data(), sizeof mark);
  }
  return mark;
}

void requestOnce(int s, Datagram& request, std::uint32_t number) {
  const Mark mark{kRequest, number};
  std::memcpy(request.data(), &mark, sizeof mark);
  Datagram answer;
  broadcast(s, request, kRequestLength);
  auto sent = std::chrono::steady_clock::now();
  for (;;) {
    const Mark got = receiveMark(s, answer, kAnswerLength);
    if (got.kind == kAnswer && got.number == number) return;
    if (std::chrono::steady_clock::now() - sent < std::chrono::seconds(1)) continue;
    broadcast(s, request, kRequestLength);
    sent = std::chrono::steady_clock::now();
  }
}

}  // namespace

void answerRequests(const std::string& interfaceName) {
  const int s = openSocket(interfaceName);
  Datagram request;
  Datagram answer{};
  for (;;) {
    Mark mark = receiveMark(s, request, kRequestLength);
    if (mark.kind != kRequest) continue;
    mark.kind = kAnswer;
    std::memcpy(answer.data(), &mark, sizeof mark);
    broadcast(s, answer, kAnswerLength);
  }
}

double exchangeRequests(const std::string& interfaceName, std::int64_t payloadBytes) {
  const int s = openSocket(interfaceName);
  Datagram request{};
  const auto started = std::chrono::steady_clock::now();
  std::uint32_t number = 0;
  for (std::int64_t sent = 0; sent < payloadBytes; sent += kChunkLength) {
    requestOnce(s, request, ++number);
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
  close(s);
  return taken.count();
}

}  // namespace omniset::bench
