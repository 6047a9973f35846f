#include <arpa/inet.h>
#include <linux/filter.h>
#include <linux/if_packet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <iterator>

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

  void allowBroadcast(const char* failure) override { switchOn(SO_BROADCAST, failure); }

  void allowAddressReuse(const char* failure) override { switchOn(SO_REUSEADDR, failure); }

  void bind(std::uint16_t port, const char* failure) override {
    const sockaddr_in any = toNative({INADDR_ANY, port});
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&any), sizeof any) < 0) {
      throw SocketExc(failure);
    }
    dropOwnBroadcasts(port);
    makeRoom();
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
    // Not select(): its sets end at descriptor 1023.
    pollfd readable{socket_, POLLIN, 0};
    const timespec limit{static_cast<time_t>(timeout / kSecond),
                         static_cast<long>(timeout % kSecond * 1000)};
    const int ready = ppoll(&readable, 1, timeout != 0 ? &limit : nullptr, nullptr);
    if (ready < 0 && errno == EINTR) return false;
    if (ready < 0) throw SocketExc(failure);
    return ready > 0;
  }

  std::size_t receiveFrom(std::span<std::uint8_t> buffer, UdpPeer& from,
                          const char* failure) override {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    const ssize_t received = recvfrom(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT,
                                      reinterpret_cast<sockaddr*>(&address), &length);
    // EAGAIN: what there was is gone, for instance for its wrong checksum.
    if (received < 0 && (errno == ECONNREFUSED || errno == EAGAIN)) return 0;
    if (received < 0) throw SocketExc(failure);
    from = {address.sin_addr.s_addr, ntohs(address.sin_port)};
    return static_cast<std::size_t>(received);
  }

  std::optional<std::size_t> receiveWithin(Micros timeout, std::span<std::uint8_t> buffer,
                                           UdpPeer& from, const char* waitFailure,
                                           const char* receiveFailure) override {
    limitReceiving(timeout, waitFailure);
    sockaddr_in address{};
    socklen_t length = sizeof address;
    const ssize_t received = recvfrom(socket_, buffer.data(), buffer.size(), 0,
                                      reinterpret_cast<sockaddr*>(&address), &length);
    if (received < 0 && (errno == EAGAIN || errno == EINTR)) return std::nullopt;
    if (received < 0 && errno == ECONNREFUSED) return 0;
    if (received < 0) throw SocketExc(receiveFailure);
    from = {address.sin_addr.s_addr, ntohs(address.sin_port)};
    return static_cast<std::size_t>(received);
  }

 private:
  // Holds for receiving that waits.
  void limitReceiving(Micros timeout, const char* failure) {
    if (timeout == receiveLimit_) return;
    const timeval limit{static_cast<time_t>(timeout / kSecond),
                        static_cast<suseconds_t>(timeout % kSecond)};
    if (setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) < 0) {
      throw SocketExc(failure);
    }
    receiveLimit_ = timeout;
  }

  void switchOn(int option, const char* failure) {
    const int yes = 1;
    if (setsockopt(socket_, SOL_SOCKET, option, &yes, sizeof yes) < 0) throw SocketExc(failure);
  }

  void bindToInterface() {
    if (setsockopt(socket_, SOL_SOCKET, SO_BINDTODEVICE, interfaceName_.c_str(),
                   static_cast<socklen_t>(interfaceName_.size())) < 0) {
      throw SocketExc("setsockopt() SO_BINDTODEVICE failed");
    }
  }

  // A broadcast comes back to the socket that sent it, where nobody wants it: it would cost a
  // wake-up and the place of somebody else's datagram. Where the system cannot filter, it comes.
  void dropOwnBroadcasts(std::uint16_t port) {
    constexpr auto kPacketType = static_cast<std::uint32_t>(SKF_AD_OFF + SKF_AD_PKTTYPE);
    constexpr std::uint32_t kSourcePort = 0;  // offset in the UDP header
    constexpr std::uint32_t kWhole = 0xFFFF'FFFF;
    sock_filter steps[] = {
        {BPF_LD | BPF_B | BPF_ABS, 0, 0, kPacketType},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 3, PACKET_LOOPBACK},
        {BPF_LD | BPF_H | BPF_ABS, 0, 0, kSourcePort},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, port},
        {BPF_RET | BPF_K, 0, 0, 0},
        {BPF_RET | BPF_K, 0, 0, kWhole},
    };
    const sock_fprog filter{std::size(steps), steps};
    setsockopt(socket_, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter);
  }

  // For a datagram of each of some hundred peers that answer at once; the usual room is enough for
  // ninety. What the system does not grant is gone without.
  void makeRoom() {
    const int bytes = 512 * 1024;
    setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
  }

  std::string interfaceName_;
  int socket_ = -1;
  Micros receiveLimit_ = 0;  // of SO_RCVTIMEO; 0 is without limit
};

}  // namespace

std::unique_ptr<UdpSocket> makeUdpSocket(const std::string& interfaceName) {
  return std::make_unique<PosixUdpSocket>(interfaceName);
}

SocketLibrary::SocketLibrary() = default;
SocketLibrary::~SocketLibrary() = default;

}  // namespace omniset
