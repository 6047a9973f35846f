// The router installer in its thread, on one adapter.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/adapter_choice.h"
#include "core/clock.h"
#include "core/temp_file.h"
#include "core/thread.h"
#include "core/udp_socket.h"
#include "install/router_installer.h"

namespace omniset {

class InstallerWorker {
 public:
  // Opens the install link and starts the thread. Raises Failure with a sentence when the network
  // cannot be used.
  explicit InstallerWorker(const AdapterChoice& choice);
  // Stops the thread, which takes up to a second; all sessions end, their files go.
  ~InstallerWorker();
  InstallerWorker(const InstallerWorker&) = delete;
  InstallerWorker& operator=(const InstallerWorker&) = delete;

  RouterInstaller& installer() { return thread_->job(); }
  const Clock& clock() const { return clock_; }

  // The thread ended by itself: nothing will happen any more.
  bool hasEnded() const { return thread_->exitCode() != ThreadBase::kStillActive; }
  // Why, once it has ended.
  const std::string& reason() const { return thread_->job().reason(); }

 private:
  // What the installer refers to. It belongs to the job, because a thread that does not stop in
  // time is left behind with the job alone.
  class Services {
   protected:
    explicit Services(const AdapterChoice& choice) : interfaces_(choice.adapter) {}

    // The adapter that was chosen, so that a change among the others in between does no harm.
    class ChosenInterface : public NetworkInterfaces {
     public:
      explicit ChosenInterface(NetworkInterface chosen) : chosen_(std::move(chosen)) {}
      std::vector<NetworkInterface> list() override { return {chosen_}; }

     private:
      NetworkInterface chosen_;
    };

    ChosenInterface interfaces_;
    SystemClock systemClock_;
    SystemTempFiles systemTempFiles_;
  };

  // Remembers why it ended.
  class Job : private Services, public RouterInstaller {
   public:
    Job(int adapter, const AdapterChoice& choice);
    void run() override;
    // Of a job whose thread has ended.
    const std::string& reason() const { return reason_; }

   private:
    const std::string shownName_;
    std::string reason_ = "unknown";
  };

  SocketLibrary socketLibrary_;
  SystemClock clock_;
  std::unique_ptr<Thread<Job, int>> thread_;
};

}  // namespace omniset
