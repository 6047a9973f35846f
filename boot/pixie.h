// The network boot service: answers the boot requests of PXE and Etherboot clients and serves each
// the boot images, one client at a time. A job for a thread of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "boot/boot_images.h"
#include "boot/boot_turns.h"
#include "boot/bootp_packet.h"
#include "boot/bootp_responder.h"
#include "boot/local_address.h"
#include "boot/tftp_transfer.h"
#include "core/clock.h"
#include "core/job.h"
#include "core/locked_queue.h"
#include "core/mac_address.h"
#include "core/udp_socket.h"

namespace omniset {

struct PixieConfig {
  bool enabled = false;
  std::uint32_t clientAddress = 0;  // network byte order; what every client gets
};

// Follows what the service does. Called in the service's thread; what it does delays the clients.
class BootWatcher {
 public:
  virtual ~BootWatcher() = default;
  // False when this client is not to be answered.
  virtual bool mayBoot(const MacAddress& client) = 0;
  // A reply was sent; a client may ask several times for one boot.
  virtual void answered(const MacAddress& client) = 0;
  // The client asked for a file, by whatever bytes, and gets the image of this number.
  virtual void imageRequested(int number, std::string_view fileName) = 0;
  virtual void imageSent(int number, std::size_t length) = 0;
  // The client asked for no further image (`requested` false), or fell silent within one. The
  // sequence is over.
  virtual void gaveUp(int number, bool requested) = 0;
  virtual void allSent() = 0;
};

// What the service needs of the system. Everything referred to outlives the service.
struct PixieServices {
  std::function<std::unique_ptr<UdpSocket>()> makeSocket;  // not yet open
  LocalAddresses& addresses;
  const Clock& clock;
  std::function<BootImage(int number)> loadImage;
  std::function<int()> random;     // as rand()
  BootWatcher* watcher = nullptr;  // or nobody
};

class Pixie : public Code {
 public:
  // The number has no meaning. `stored` is what the settings say.
  Pixie(int, PixieConfig stored, PixieServices services);

  // Opens the BOOTP socket and serves until the stop event is signalled; that is noticed within a
  // second, but not while images are served. Raises SocketExc and Error.
  void run() override;

  // How long other threads wait for the queue, in milliseconds.
  static constexpr int kAccessTimeoutMs = 5000;

  // Changes what holds, within about a second unless images are served. For any thread. Raises
  // std::runtime_error "Mutex wait timeouted".
  void configure(const PixieConfig& config) { configurations_.push(config, kAccessTimeoutMs); }

  // One round of the loop: waits for a request, at most a second, and serves the client. False when
  // the stop event is signalled. For the service's thread.
  bool step(BootpResponder& responder);

 private:
  class Sequence;

  void takeConfiguration(BootpResponder& responder);
  std::optional<BootpPacket> awaitRequest(BootpResponder& responder);
  void gatherRequests(BootpResponder& responder);
  void forgetRequests(BootpResponder& responder);
  void answer(BootpResponder& responder, BootpPacket packet);
  bool cameBack(BootpResponder& responder, const MacAddress& client);
  // These serve the images to the client that was answered; true when it fetched something, and
  // when it fetched all.
  bool serveImages(bool pxe, const std::function<bool()>& superseded);
  bool servePxe(Sequence& sequence, const std::function<bool()>& superseded);
  bool serveEtherboot(Sequence& sequence, const std::function<bool()>& superseded);

  bool enabled_;
  std::uint32_t clientAddress_;
  PixieServices services_;
  TransferPorts ports_;
  LockedQueue<PixieConfig> configurations_;
  BootTurns turns_;
};

}  // namespace omniset
