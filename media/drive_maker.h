// Makes a disk of this computer bootable with the installer system and puts packages and a script
// on it, so that a router installs itself from it. A job for a thread of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/job.h"
#include "core/locked_queue.h"
#include "install/router_record.h"
#include "media/media_services.h"
#include "media/read_back.h"

namespace omniset {

// What to make.
struct RInfo {
  char driveLetter = 0;  // upper-case
  std::string packageDirectory;
  std::vector<std::string> packageFiles;  // names, in install order
  bool useScriptFile = false;             // copy scriptFile onto the disk
  std::string scriptFile;
  std::int32_t baudRate = 0;  // 0: no line for the serial ports
};

// How far the job is.
struct DriveReport {
  // kInstalling, kFinished or kFailed.
  RouterStatus state = RouterStatus::kInstalling;
  std::int64_t totalBytes = 0;
  std::int64_t bytesDone = 0;
  std::string statusText;
};

class DriveMaker : public Code {
 public:
  // `totalBytes`: of all packages together.
  DriveMaker(RInfo what, MediaServices services, std::int64_t totalBytes);

  // Raises Failure, and Error for system folders, drive strings and a format that cannot be ended;
  // then the last report has failed with that text. Asked to stop it fails with "Canceled",
  // between two calls of the system, each of which may take its time on a slow drive.
  void run() override;

  // At most one record, the latest. Any thread.
  LockedQueue<DriveReport>& reports() { return reports_; }

 private:
  void make();
  void wipeBootRecord();
  std::uint32_t deviceNumber();
  void copySystemFiles();
  void copyPackages();
  void copyPackage(const std::string& name);
  void writeScript();
  void makeBootable();
  void checkAll();
  void report(const std::string& text, std::int64_t bytes);
  void queueReport();
  std::string onDrive(const std::string& name) const;

  RInfo what_;
  MediaServices services_;
  DriveReport report_;
  LockedQueue<DriveReport> reports_;
  ReadBack readBack_;
  std::int64_t lastSize_ = 0;  // of the package copied last
};

}  // namespace omniset
