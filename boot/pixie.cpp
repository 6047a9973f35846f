#include "boot/pixie.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "core/ipv4_address.h"
#include "core/trace.h"

namespace omniset {

namespace {

constexpr const char* kBootFileName = "/image";
constexpr int kIdleMs = 1000;
constexpr Micros kRequestWait = kSecond;
constexpr Micros kGlance = kMillisecond;
// Of each glance at the BOOTP socket, so that a flood of them cannot hold up the client.
constexpr int kMostPerGlance = 16;
constexpr std::size_t kMostKept = 16;

constexpr std::array kPxeSequence{kNetworkBootProgramImage, kNetworkConfigurationImage,
                                  kKernelImage, kRamDiskImage};

// So much of the kernel's beginning is in the Etherboot image already.
constexpr std::size_t kKernelHead = 3024;

void traceConfiguration(const char* label, bool enabled, std::uint32_t clientAddress) {
  traceLine(label + std::to_string(enabled ? 1 : 0) + ", addr:" + dottedQuad(clientAddress));
}

std::vector<std::uint8_t> assembleEtherbootImage(
    const std::function<BootImage(int number)>& loadImage) {
  const auto loader = loadImage(kEtherbootImage).bytes();
  const auto kernel = loadImage(kKernelImage).bytes();
  const auto ramDisk = loadImage(kRamDiskImage).bytes();
  const auto kernelTail = kernel.subspan(std::min(kKernelHead, kernel.size()));
  std::vector<std::uint8_t> image;
  image.reserve(loader.size() + kernelTail.size() + ramDisk.size());
  for (const auto part : {loader, kernelTail, ramDisk}) {
    image.insert(image.end(), part.begin(), part.end());
  }
  return image;
}

}  // namespace

// The images of one boot, served over one listening socket.
class Pixie::Sequence {
 public:
  Sequence(const PixieServices& services, TransferPorts& ports, std::uint32_t clientAddress)
      : services_(services),
        ports_(ports),
        clientAddress_(clientAddress),
        listening_(services.makeSocket()) {
    listening_->open("failed to create TFTP socket");
    listening_->bind(kTftpPort, "bind failed");
  }

  // False when the client did not fetch it, or came back with a new request.
  bool serve(int number, BootImage image, const std::function<bool()>& superseded = {}) {
    bool requested = false;
    TftpServices tftp{services_.makeSocket,
                      [this] { return ports_.next(); },
                      [&](std::string_view fileName) {
                        requested = true;
                        if (watcher()) watcher()->imageRequested(number, fileName);
                      },
                      {}};
    if (superseded) tftp.superseded = [&] { return isOver_ = superseded(); };
    const bool sent = serveImage(*listening_, image, clientAddress_, tftp);
    if (watcher() && sent) watcher()->imageSent(number, image.length);
    if (watcher() && !sent && !isOver_) watcher()->gaveUp(number, requested);
    return sent;
  }

  bool isOver() const { return isOver_; }

 private:
  BootWatcher* watcher() const { return services_.watcher; }

  const PixieServices& services_;
  TransferPorts& ports_;
  std::uint32_t clientAddress_;
  std::unique_ptr<UdpSocket> listening_;
  bool isOver_ = false;
};

Pixie::Pixie(int, PixieConfig stored, PixieServices services)
    : enabled_(stored.enabled),
      clientAddress_(stored.clientAddress),
      services_(std::move(services)),
      ports_(services_.random) {
  traceConfiguration("conf: en:", enabled_, clientAddress_);
}

void Pixie::run() {
  BootpResponder responder(kBootFileName, services_.makeSocket(), services_.addresses);
  while (step(responder)) {
  }
}

bool Pixie::step(BootpResponder& responder) {
  if (stopEvent().wait(0)) return false;
  takeConfiguration();
  if (!enabled_) {
    kept_.clear();
    stopEvent().wait(kIdleMs);
    return true;
  }
  if (const auto packet = awaitRequest(responder)) answer(responder, *packet);
  return true;
}

void Pixie::takeConfiguration() {
  if (!configurations_.notEmpty().wait(0)) return;
  const auto config = configurations_.pop();
  if (!config) return;
  enabled_ = config->enabled;
  clientAddress_ = config->clientAddress;
  traceConfiguration("new conf: en:", enabled_, clientAddress_);
}

std::optional<BootpPacket> Pixie::awaitRequest(BootpResponder& responder) {
  if (!kept_.empty()) {
    const BootpPacket packet = kept_.front();
    kept_.pop_front();
    return packet;
  }
  if (!responder.socket().waitReadable(kRequestWait, "select failed")) return std::nullopt;
  return receiveRequest(responder);
}

std::optional<BootpPacket> Pixie::receiveRequest(BootpResponder& responder) {
  BootpPacket packet;
  UdpPeer from;
  const std::size_t length = responder.socket().receiveFrom(packet.bytes, from, "recv failed");
  traceLine("recv bytes:" + std::to_string(length));
  if (responder.isBootRequest(packet)) return packet;
  traceLine("INVALID REQUEST");
  return std::nullopt;
}

void Pixie::answer(BootpResponder& responder, BootpPacket packet) {
  const MacAddress client = clientMac(packet);
  BootWatcher* const watcher = services_.watcher;
  traceLine("REQ RECEIVED:");
  if (watcher && !watcher->mayBoot(client)) return;
  if (!responder.reply(packet, clientAddress_)) {
    traceLine("FAILED TO REPLY");
    return;
  }
  if (watcher) watcher->answered(client);
  serveImages(responder.pxeSeen(), [&] { return cameBack(responder, client); });
}

// While a client has fetched nothing yet it may ask again, as most boot firmware does before it
// goes on: it then needs another reply. Requests of others wait for their turn.
bool Pixie::cameBack(BootpResponder& responder, const MacAddress& client) {
  if (stopEvent().wait(0)) return true;
  for (int i = 0; i < kMostPerGlance; ++i) {
    if (!responder.socket().waitReadable(kGlance, "select failed")) return false;
    const auto packet = receiveRequest(responder);
    if (!packet) continue;
    if (clientMac(*packet) == client) {
      kept_.push_front(*packet);
      return true;
    }
    keep(*packet);
  }
  return false;
}

void Pixie::keep(const BootpPacket& packet) {
  const MacAddress client = clientMac(packet);
  const auto earlier = std::find_if(kept_.begin(), kept_.end(), [&](const BootpPacket& other) {
    return clientMac(other) == client;
  });
  if (earlier != kept_.end()) {
    *earlier = packet;
  } else if (kept_.size() < kMostKept) {
    kept_.push_back(packet);
  }
}

void Pixie::serveImages(bool pxe, const std::function<bool()>& superseded) {
  Sequence sequence(services_, ports_, clientAddress_);
  bool sent = true;
  if (pxe) {
    for (const int number : kPxeSequence) {
      const bool first = number == kPxeSequence.front();
      if (!sequence.serve(number, services_.loadImage(number),
                          first ? superseded : std::function<bool()>{})) {
        return;
      }
    }
  } else {
    const auto image = assembleEtherbootImage(services_.loadImage);
    sent = sequence.serve(kEtherbootImage, {image.data(), image.size()}, superseded);
    if (sequence.isOver()) return;
  }
  traceLine("ALL DONE");
  if (services_.watcher && sent) services_.watcher->allSent();
}

}  // namespace omniset
