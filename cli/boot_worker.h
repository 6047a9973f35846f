// The network boot service in its thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "boot/local_address.h"
#include "boot/pixie.h"
#include "cli/adapter_choice.h"
#include "cli/adapter_watch.h"
#include "cli/boot_events.h"
#include "cli/boot_image_source.h"
#include "core/clock.h"
#include "core/thread.h"
#include "core/udp_socket.h"

namespace omniset {

struct BootWork {
  AdapterChoice choice;
  std::uint32_t clientAddress = 0;  // network byte order
  BootImageSource images;
  BootRefusal refusal = everybodyBoots;
};

class BootWorker {
 public:
  // Checks that the ports can be had, and starts the thread. Raises Failure with a sentence when
  // they cannot.
  explicit BootWorker(const BootWork& work);
  // Stops the thread, which takes up to a second, also when it is serving a client: that one is
  // left alone in the middle of its images, where waiting for their end could take minutes.
  ~BootWorker();
  BootWorker(const BootWorker&) = delete;
  BootWorker& operator=(const BootWorker&) = delete;

  // The oldest event that was not taken yet.
  std::optional<BootEvent> takeEvent() { return thread_->job().takeEvent(); }

  // Nothing will happen any more: the thread ended by itself, or cannot hear anything.
  bool hasEnded();
  // Why, in a sentence, once it has ended.
  std::string reason() const;

 private:
  // What the service refers to. It belongs to the job, because a thread that does not stop in time
  // is left behind with the job alone.
  class Services {
   protected:
    explicit Services(const BootWork& work);

    const AdapterChoice choice_;
    SystemLocalAddresses addresses_;
    SystemClock clock_;
    BootEvents events_;
    std::mt19937 random_{std::random_device{}()};
  };

  // Remembers why it ended.
  class Job : private Services, public Pixie {
   public:
    Job(int number, const BootWork& work);
    void run() override;
    std::optional<BootEvent> takeEvent() { return events_.take(); }
    // Of a job whose thread has ended.
    const std::string& reason() const { return reason_; }

   private:
    PixieServices services(const BootImageSource& images);

    std::string reason_ = "unknown";
  };

  const std::string shownName_;
  SystemLocalAddresses addresses_;
  AdapterWatch adapterWatch_;
  bool isDeaf_ = false;
  SocketLibrary socketLibrary_;
  std::unique_ptr<Thread<Job, int>> thread_;
};

}  // namespace omniset
