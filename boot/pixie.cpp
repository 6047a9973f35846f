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
// Of each look at the BOOTP socket, so that a flood cannot hold up the client whose turn it is.
constexpr int kMostPerLook = 64;
// More than a socket holds of the smallest requests.
constexpr int kMostForgotten = 10'000;

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
                        requested = hasBegun_ = true;
                        if (watcher()) watcher()->imageRequested(number, fileName);
                      },
                      {}};
    if (superseded) tftp.superseded = [&] { return isSuperseded_ = superseded(); };
    tftp.clock = &services_.clock;
    const bool sent = serveImage(*listening_, image, clientAddress_, tftp);
    if (watcher() && sent) watcher()->imageSent(number, image.length);
    if (watcher() && !sent && !isSuperseded_) watcher()->gaveUp(number, requested);
    return sent;
  }

  bool isSuperseded() const { return isSuperseded_; }
  // The client has asked for an image.
  bool hasBegun() const { return hasBegun_; }

 private:
  BootWatcher* watcher() const { return services_.watcher; }

  const PixieServices& services_;
  TransferPorts& ports_;
  std::uint32_t clientAddress_;
  std::unique_ptr<UdpSocket> listening_;
  bool isSuperseded_ = false;
  bool hasBegun_ = false;
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
  takeConfiguration(responder);
  if (!enabled_) {
    stopEvent().wait(kIdleMs);
    return true;
  }
  if (const auto packet = awaitRequest(responder)) answer(responder, *packet);
  return true;
}

void Pixie::takeConfiguration(BootpResponder& responder) {
  if (!configurations_.notEmpty().wait(0)) return;
  const auto config = configurations_.pop(kAccessTimeoutMs);
  if (!config) return;
  if (!enabled_ && config->enabled) forgetRequests(responder);
  enabled_ = config->enabled;
  clientAddress_ = config->clientAddress;
  traceConfiguration("new conf: en:", enabled_, clientAddress_);
}

std::optional<BootpPacket> Pixie::awaitRequest(BootpResponder& responder) {
  const bool nobodyWaits = turns_.empty();
  if (nobodyWaits && !responder.socket().waitReadable(kRequestWait, "select failed")) {
    return std::nullopt;
  }
  gatherRequests(responder);
  return turns_.take(services_.clock.now());
}

// Of what a client has asked while others were served only the latest counts.
void Pixie::gatherRequests(BootpResponder& responder) {
  for (int i = 0; i < kMostPerLook; ++i) {
    if (!responder.socket().waitReadable(kGlance, "select failed")) return;
    BootpPacket packet;
    UdpPeer from;
    const std::size_t length = responder.socket().receiveFrom(packet.bytes, from, "recv failed");
    traceLine("recv bytes:" + std::to_string(length));
    if (isFromBootFirmware(packet)) {
      turns_.add(packet);
    } else {
      traceLine("INVALID REQUEST");
    }
  }
}

// Whoever asked while the service was off has given up, or asks again.
void Pixie::forgetRequests(BootpResponder& responder) {
  turns_.clear();
  BootpPacket packet;
  UdpPeer from;
  for (int i = 0; i < kMostForgotten; ++i) {
    if (!responder.socket().waitReadable(kGlance, "select failed")) return;
    responder.socket().receiveFrom(packet.bytes, from, "recv failed");
  }
}

void Pixie::answer(BootpResponder& responder, BootpPacket packet) {
  const MacAddress client = clientMac(packet);
  BootWatcher* const watcher = services_.watcher;
  if (watcher && !watcher->mayBoot(client)) return;
  if (!responder.isBootRequest(packet)) return;
  traceLine("REQ RECEIVED:");
  if (!responder.reply(packet, clientAddress_)) {
    traceLine("FAILED TO REPLY");
    return;
  }
  if (watcher) watcher->answered(client);
  const bool begun = serveImages(responder.pxeSeen(), [&] { return cameBack(responder, client); });
  if (begun) turns_.endTurn();
}

// While a client has fetched nothing yet it may ask again, as most boot firmware does before it
// goes on: it then needs another reply. Requests of others wait for their turn.
bool Pixie::cameBack(BootpResponder& responder, const MacAddress& client) {
  if (stopEvent().wait(0)) return true;
  gatherRequests(responder);
  return turns_.has(client);
}

bool Pixie::serveImages(bool pxe, const std::function<bool()>& superseded) {
  Sequence sequence(services_, ports_, clientAddress_);
  const bool allSent = pxe ? servePxe(sequence, superseded) : serveEtherboot(sequence, superseded);
  if (allSent && services_.watcher) services_.watcher->allSent();
  return sequence.hasBegun();
}

bool Pixie::servePxe(Sequence& sequence, const std::function<bool()>& superseded) {
  for (const int number : kPxeSequence) {
    const bool first = number == kPxeSequence.front();
    if (!sequence.serve(number, services_.loadImage(number),
                        first ? superseded : std::function<bool()>{})) {
      return false;
    }
  }
  traceLine("ALL DONE");
  return true;
}

// With the one image all is done, however it went.
bool Pixie::serveEtherboot(Sequence& sequence, const std::function<bool()>& superseded) {
  const auto image = assembleEtherbootImage(services_.loadImage);
  const bool sent = sequence.serve(kEtherbootImage, {image.data(), image.size()}, superseded);
  if (!sequence.isSuperseded()) traceLine("ALL DONE");
  return sent;
}

}  // namespace omniset
