#include "ui/workflow/local_drives.h"

#include <algorithm>
#include <exception>
#include <limits>

#include "core/error.h"
#include "media/drive_checks.h"

namespace omniset {

namespace {

constexpr const char* kFailed = "Installation failed: ";

bool isSameDrive(const RouterRecord& row, const DriveEntry& drive) {
  return row.mac == driveAddress(drive.root.front()) && row.driveType == drive.type;
}

RouterRecord recordOf(const DriveEntry& drive) {
  RouterRecord record;
  record.kind = kLocalDrive;
  record.label = drive.root;
  record.mac = driveAddress(drive.root.front());
  record.driveType = drive.type;
  return record;
}

// The record has less room for the number than the packages of a large drive may take.
std::int32_t shownBytes(std::int64_t bytes) {
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(bytes, 0, std::numeric_limits<std::int32_t>::max()));
}

RInfo planOf(const RouterRecord& request, const std::string& packagesFolder) {
  RInfo what;
  what.driveLetter = static_cast<char>(request.mac.bytes[5]);
  what.packageDirectory = packagesFolder;
  what.packageFiles = request.packageFiles;
  what.useScriptFile = request.useOwnScript;
  if (request.useOwnScript) what.scriptFile = request.scriptPath;
  what.baudRate = request.baudRate;
  return what;
}

}  // namespace

MacAddress driveAddress(char letter) {
  return {{0x03, 0x64, 0x72, 0x76, 0x00, static_cast<std::uint8_t>(letter)}};
}

bool isDriveAddress(const MacAddress& address) {
  return address == driveAddress(static_cast<char>(address.bytes[5]));
}

std::vector<RouterRecord> LocalDrives::follow() {
  const std::vector<DriveEntry> drives = enumerateDrives(*media_.volumes);
  std::vector<MacAddress> gone;
  routers_.forEach([&](const RouterRecord& row) {
    const auto isRow = [&](const DriveEntry& drive) { return isSameDrive(row, drive); };
    if (row.kind == kLocalDrive && installing_ != row.mac &&
        std::none_of(drives.begin(), drives.end(), isRow)) {
      gone.push_back(row.mac);
    }
  });
  for (const MacAddress& drive : gone) routers_.remove(drive);
  std::vector<RouterRecord> added;
  for (const DriveEntry& drive : drives) {
    if (!routers_.find(driveAddress(drive.root.front()))) added.push_back(recordOf(drive));
  }
  return added;
}

void LocalDrives::mediaRemoved(std::uint32_t letters) {
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    if (!(letters >> (letter - 'A') & 1)) continue;
    const RouterRecord* row = routers_.find(driveAddress(letter));
    if (row && installing_ != row->mac) routers_.release(row->mac);
  }
}

std::optional<RInfo> LocalDrives::plan(const RouterRecord& request,
                                       const std::string& packagesFolder) {
  auto agreed = agreedPlan(request, packagesFolder);
  if (!agreed) return std::nullopt;
  if (!job_.awaitEnd(kPreviousJobMs)) {
    refuse("Another drive is still being written. Try again when it is done.");
    return std::nullopt;
  }
  poll();
  return agreed;
}

// What cannot be read on this side belongs to this installation.
std::optional<RInfo> LocalDrives::agreedPlan(const RouterRecord& request,
                                             const std::string& packagesFolder) {
  try {
    RInfo what = planOf(request, packagesFolder);
    if (mayBeErased(request, what)) return what;
  } catch (const std::exception& failure) {
    refuse(failure.what());
  }
  return std::nullopt;
}

// What the operator agreed to is what is erased: the drive is looked at again behind the question,
// during which another medium may have been put in.
bool LocalDrives::mayBeErased(const RouterRecord& request, const RInfo& what) {
  std::string agreedTo;
  for (;;) {
    const DriveFacts facts = media_.volumes->facts(request.label);
    const std::string obstacle = driveObstacle(request.label, facts, what, media_);
    if (!obstacle.empty()) {
      refuse(obstacle);
      return false;
    }
    const std::string drive = driveDescription(request.label, facts);
    if (drive == agreedTo) return true;
    if (!person_.warn("Everything on drive " + drive + " will be erased. Proceed?")) return false;
    agreedTo = drive;
  }
}

void LocalDrives::refuse(const std::string& reason) {
  person_.tell("Cannot install", reason, Operator::Icon::kError);
}

void LocalDrives::start(const RouterRecord& request, const RInfo& what) {
  job_.start(what, request.packageBytes);
  installing_ = request.mac;
  DriveReport begun;
  begun.totalBytes = request.packageBytes;
  begun.statusText = "Installing...";
  show(begun);
}

// Asked first whether it has ended, so that its last report is not missed.
void LocalDrives::poll() {
  if (!installing_) return;
  const bool ended = job_.hasEnded();
  if (const auto report = job_.report()) show(*report);
  if (ended) collect();
}

void LocalDrives::show(const DriveReport& report) {
  RouterRecord state;
  state.status = report.state;
  state.bytesSent = shownBytes(report.bytesDone);
  state.statusText = report.statusText;
  if (report.state == RouterStatus::kFailed) {
    state.bytesSent = 0;
    state.statusText = kFailed + report.statusText;
  }
  routers_.updateStatus(*installing_, state);
}

// A job that ends without a word about its outcome has been ended from outside.
void LocalDrives::collect() {
  const RouterRecord* row = routers_.find(*installing_);
  if (row && row->status == RouterStatus::kInstalling) {
    DriveReport unfinished;
    unfinished.state = RouterStatus::kFailed;
    unfinished.statusText = "The work was ended before it was done";
    show(unfinished);
  }
  installing_.reset();
}

void LocalDrives::cancel(const MacAddress& drive) {
  if (installing_ == drive) {
    job_.requestStop();
  } else {
    routers_.release(drive);
  }
}

}  // namespace omniset
