// The local drives among the entries of the router list: which there are, what the operator is
// asked before one is erased, and the job that installs onto one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/mac_address.h"
#include "install/router_list.h"
#include "media/drive_list.h"
#include "media/media_services.h"
#include "ui/workflow/drive_job.h"
#include "ui/workflow/main_view.h"

namespace omniset {

// What a drive's row is found by: an address that no network adapter has, because its multicast bit
// is set.
MacAddress driveAddress(char letter);
bool isDriveAddress(const MacAddress& address);

// All of it runs in the window's thread.
class LocalDrives {
 public:
  // How long a previous job is waited for, in milliseconds.
  static constexpr int kPreviousJobMs = 5000;

  // What is referred to is the owner's and outlives this.
  LocalDrives(RouterList& routers, MediaServices media, DriveJob& job, Operator& person)
      : routers_(routers), media_(std::move(media)), job_(job), person_(person) {}

  // Removes the rows of drives that are gone, unless one is being installed onto, and returns
  // records for drives that have no row. Asks the system for letters and types only, which wakes up
  // no drive. Raises Error as enumerateDrives() does.
  std::vector<RouterRecord> follow();

  // The medium of these drives was taken out: what was said of it no longer holds. Bit 0 is A.
  void mediaRemoved(std::uint32_t letters);

  // Takes the request to the operator: refuses it when something hinders it, asks whether the drive
  // may be erased, and waits for a previous job. Nothing when it must not be; the operator knows
  // why then. Changes nothing.
  std::optional<RInfo> plan(const RouterRecord& request, const std::string& packagesFolder);

  // Raises Error when there can be no thread.
  void start(const RouterRecord& request, const RInfo& what);

  // Follows the job. For every tick of the timer.
  void poll();

  // Stops the drive's job, or makes the drive ready for another one.
  void cancel(const MacAddress& drive);

 private:
  std::optional<RInfo> agreedPlan(const RouterRecord& request, const std::string& packagesFolder);
  bool mayBeErased(const RouterRecord& request, const RInfo& what);
  void refuse(const std::string& reason);
  void show(const DriveReport& report);
  void collect();

  RouterList& routers_;
  MediaServices media_;
  DriveJob& job_;
  Operator& person_;

  std::optional<MacAddress> installing_;
};

}  // namespace omniset
