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
  std::string reason() const;

 private:
  // The adapter that was chosen, so that a change among the others in between does no harm.
  class ChosenInterface : public NetworkInterfaces {
   public:
    explicit ChosenInterface(NetworkInterface chosen) : chosen_(std::move(chosen)) {}
    std::vector<NetworkInterface> list() override { return {chosen_}; }

   private:
    NetworkInterface chosen_;
  };

  // Remembers why it ended.
  class Job : public RouterInstaller {
   public:
    using RouterInstaller::RouterInstaller;
    void run() override;
    // Of a job whose thread has ended.
    const std::string& reason() const { return reason_; }

   private:
    std::string reason_ = "unknown";
  };

  const std::string shownName_;
  SocketLibrary socketLibrary_;
  ChosenInterface interfaces_;
  SystemClock clock_;
  SystemTempFiles tempFiles_;
  std::unique_ptr<Thread<Job, int>> thread_;
};

}  // namespace omniset
