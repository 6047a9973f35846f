// The network boot service in its thread, as the window runs it.
#pragma once

#include <memory>
#include <random>
#include <string>

#include "boot/local_address.h"
#include "boot/pixie.h"
#include "core/clock.h"
#include "core/thread.h"
#include "ui/workflow/net_booting.h"

namespace omniset {

class BootService : public BootServiceRun {
 public:
  BootService() = default;
  ~BootService() override;
  BootService(const BootService&) = delete;
  BootService& operator=(const BootService&) = delete;

  void start(const PixieConfig& config) override;
  // Stops the thread, which takes up to a second; one that serves a client at that moment is ended
  // after five.
  void stop();
  void configure(const PixieConfig& config) override { thread_->job().configure(config); }
  bool hasEnded() const override { return thread_->exitCode() != ThreadBase::kStillActive; }
  std::string reason() const override { return thread_->job().reason(); }

 private:
  // What the service refers to. It belongs to the job, because a thread that does not stop in time
  // may be left behind with the job alone.
  class Services {
   protected:
    PixieServices services();

   private:
    SystemLocalAddresses addresses_;
    SystemClock clock_;
    std::mt19937 random_{std::random_device{}()};
  };

  // Remembers why it ended.
  class Job : private Services, public Pixie {
   public:
    Job(int number, const PixieConfig& stored) : Pixie(number, stored, services()) {}
    void run() override;
    // Of a job whose thread has ended.
    const std::string& reason() const { return reason_; }

   private:
    std::string reason_;
  };

  std::unique_ptr<Thread<Job, int>> thread_;
};

}  // namespace omniset
