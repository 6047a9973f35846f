#include <winsock.h>

#include "core/error.h"
#include "core/rest_win32.h"
#include "core/udp_socket.h"

namespace omniset {

namespace {

constexpr WORD kWinsock11 = 0x0102;

sockaddr_in toNative(const UdpPeer& peer) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(peer.port);
  address.sin_addr.s_addr = peer.address;
  return address;
}

class WinsockUdpSocket : public UdpSocket {
 public:
  ~WinsockUdpSocket() override {
    if (socket_ != INVALID_SOCKET) closesocket(socket_);
  }

  void open(const char* failure) override {
    socket_ = socket(AF_INET, SOCK_DGRAM, 0);
    if (socket_ == INVALID_SOCKET) throw SocketExc(failure);
    makeRoom();
  }

  void allowBroadcast(const char* failure) override { switchOn(SO_BROADCAST, failure); }

  void allowAddressReuse(const char* failure) override { switchOn(SO_REUSEADDR, failure); }

  void bind(std::uint16_t port, const char* failure) override {
    const sockaddr_in any = toNative({INADDR_ANY, port});
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&any), sizeof any) == SOCKET_ERROR) {
      throw SocketExc(failure);
    }
  }

  std::size_t sendTo(std::span<const std::uint8_t> bytes, const UdpPeer& to,
                     const char* failure) override {
    const sockaddr_in address = toNative(to);
    const int sent =
        sendto(socket_, reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()),
               0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (sent == SOCKET_ERROR) throw SocketExc(failure);
    return static_cast<std::size_t>(sent);
  }

  bool waitReadable(Micros timeout, const char* failure) override {
    fd_set readable;
    readable.fd_count = 1;
    readable.fd_array[0] = socket_;
    timeval limit{static_cast<long>(timeout / kSecond), static_cast<long>(timeout % kSecond)};
    int ready;
    {
      const Rest rest;
      ready = select(0, &readable, nullptr, nullptr, timeout != 0 ? &limit : nullptr);
    }
    if (ready == SOCKET_ERROR) throw SocketExc(failure);
    return ready > 0;
  }

  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                          const char* failure) override {
    sockaddr_in address{};
    int length = sizeof address;
    const int received =
        recvfrom(socket_, reinterpret_cast<char*>(buffer.data()), static_cast<int>(buffer.size()),
                 0, reinterpret_cast<sockaddr*>(&address), &length);
    if (received == SOCKET_ERROR) return receivedWithError(buffer, from, address, failure);
    from = {address.sin_addr.s_addr, ntohs(address.sin_port)};
    return static_cast<std::size_t>(received);
  }

 private:
  void switchOn(int option, const char* failure) {
    const int yes = 1;
    if (setsockopt(socket_, SOL_SOCKET, option, reinterpret_cast<const char*>(&yes), sizeof yes) ==
        SOCKET_ERROR) {
      throw SocketExc(failure);
    }
  }

  // For a datagram of each of some hundred peers that answer at once. What the system does not
  // grant is gone without.
  void makeRoom() {
    const int bytes = 512 * 1024;
    setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&bytes), sizeof bytes);
  }

  // Winsock reports as errors what is only news of a datagram: none may end a service.
  static std::size_t receivedWithError(std::span<std::uint8_t> buffer, UdpPeer& from,
                                       const sockaddr_in& address, const char* failure) {
    switch (WSAGetLastError()) {
      case WSAEMSGSIZE:  // longer than the buffer, which is filled
        from = {address.sin_addr.s_addr, ntohs(address.sin_port)};
        return buffer.size();
      case WSAECONNRESET:  // an earlier datagram met a closed port
      case WSAENETRESET:   // an earlier datagram's time to live ran out
        return 0;
      default:
        throw SocketExc(failure);
    }
  }

  SOCKET socket_ = INVALID_SOCKET;
};

}  // namespace

std::unique_ptr<UdpSocket> makeUdpSocket(const std::string& /*interfaceName*/) {
  return std::make_unique<WinsockUdpSocket>();
}

SocketLibrary::SocketLibrary() {
  WSADATA data;
  if (WSAStartup(kWinsock11, &data) != 0) throw Error("WSA start failed");
}

SocketLibrary::~SocketLibrary() {
  WSACleanup();
}

}  // namespace omniset
