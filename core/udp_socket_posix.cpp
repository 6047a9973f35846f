#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "core/error.h"
#include "core/udp_socket.h"

namespace omniset {

namespace {

sockaddr_in toNative(const UdpPeer& peer) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(peer.port);
  address.sin_addr.s_addr = peer.address;
  return address;
}

class PosixUdpSocket : public UdpSocket {
 public:
  explicit PosixUdpSocket(std::string interfaceName) : interfaceName_(std::move(interfaceName)) {}
  ~PosixUdpSocket() override {
    if (socket_ >= 0) close(socket_);
  }

  void open(const char* failure) override {
    socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket_ < 0) throw SocketExc(failure);
    if (!interfaceName_.empty()) bindToInterface();
  }

  void allowBroadcast(const char* failure) override {
    const int yes = 1;
    if (setsockopt(socket_, SOL_SOCKET, SO_BROADCAST, &yes, sizeof yes) < 0) {
      throw SocketExc(failure);
    }
  }

  void bind(std::uint16_t port, const char* failure) override {
    const sockaddr_in any = toNative({INADDR_ANY, port});
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&any), sizeof any) < 0) {
      throw SocketExc(failure);
    }
  }

  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                     const char* failure) override {
    const sockaddr_in address = toNative(to);
    const ssize_t sent = sendto(socket_, bytes.data(), bytes.size(), 0,
                                reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (sent < 0) throw SocketExc(failure);
    return static_cast<std::size_t>(sent);
  }

  bool waitReadable(Micros timeout, const char* failure) override {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(socket_, &readable);
    timeval limit{static_cast<time_t>(timeout / kSecond),
                  static_cast<suseconds_t>(timeout % kSecond)};
    const int ready =
        select(socket_ + 1, &readable, nullptr, nullptr, timeout != 0 ? &limit : nullptr);
    if (ready < 0 && errno == EINTR) return false;
    if (ready < 0) throw SocketExc(failure);
    return ready > 0;
  }

  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                          const char* failure) override {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    const ssize_t received = recvfrom(socket_, buffer.data(), buffer.size(), 0,
                                      reinterpret_cast<sockaddr*>(&address), &length);
    if (received < 0 && errno == ECONNREFUSED) return 0;
    if (received < 0) throw SocketExc(failure);
    from = {address.sin_addr.s_addr, ntohs(address.sin_port)};
    return static_cast<std::size_t>(received);
  }

 private:
  void bindToInterface() {
    if (setsockopt(socket_, SOL_SOCKET, SO_BINDTODEVICE, interfaceName_.c_str(),
                   static_cast<socklen_t>(interfaceName_.size())) < 0) {
      throw SocketExc("setsockopt() SO_BINDTODEVICE failed");
    }
  }

  std::string interfaceName_;
  int socket_ = -1;
};

}  // namespace

std::unique_ptr<UdpSocket> makeUdpSocket(const std::string& interfaceName) {
  return std::make_unique<PosixUdpSocket>(interfaceName);
}

SocketLibrary::SocketLibrary() = default;
SocketLibrary::~SocketLibrary() = default;

}  // namespace omniset
