// A job onto a local drive that does what a test says, and drives beside the real files that are to
// be put onto them.
#pragma once

#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/error.h"
#include "tests/fakes/fake_volumes.h"
#include "tests/fakes/temp_folder.h"
#include "ui/workflow/drive_job.h"

namespace omniset::test {

class PlayedDriveJob : public DriveJob {
 public:
  bool awaitEnd(int timeoutMs) override {
    waits.push_back(timeoutMs);
    if (endsWhenAwaited) ended = true;
    return ended;
  }
  void start(const RInfo& what, std::int64_t totalBytes) override {
    if (cannotStart) throw Error("CreateThread");
    started.push_back(what);
    total = totalBytes;
    script = what.useScriptFile ? readFile(what.scriptFile) : "";
    ended = false;
    latest.reset();
  }
  std::optional<DriveReport> report() override { return std::exchange(latest, std::nullopt); }
  bool hasEnded() const override { return ended; }
  void requestStop() override { ++stopRequests; }

  void says(const std::string& text, std::int64_t bytes) {
    latest = DriveReport{RouterStatus::kInstalling, total, bytes, text};
  }
  void completes() {
    latest = DriveReport{RouterStatus::kFinished, total, total, "Installation completed"};
    ended = true;
  }
  void fails(const std::string& text) {
    latest = DriveReport{RouterStatus::kFailed, total, 0, text};
    ended = true;
  }

  bool ended = true;
  bool endsWhenAwaited = false;
  bool cannotStart = false;
  std::optional<DriveReport> latest;
  std::vector<RInfo> started;
  std::int64_t total = -1;
  std::string script;  // as the job found it at its start
  std::vector<int> waits;
  int stopRequests = 0;
};

// A file of which nothing but the size is asked.
class SizedFile : public Device {
 public:
  explicit SizedFile(std::uint64_t size) : size_(size) {}

  std::optional<std::size_t> read(std::span<std::uint8_t>) override { return std::nullopt; }
  std::optional<std::size_t> write(std::span<const std::uint8_t>) override { return std::nullopt; }
  bool seek(std::uint64_t) override { return false; }
  std::optional<std::size_t> control(std::uint32_t, std::span<const std::uint8_t>,
                                     std::span<std::uint8_t>) override {
    return std::nullopt;
  }
  std::optional<std::uint64_t> size() override { return size_; }
  bool close() override { return true; }

 private:
  std::uint64_t size_;
};

// The files of this computer are the real ones.
class VolumesWithFiles : public FakeVolumes {
 public:
  DevicePtr openWithoutAccess(const std::string& path) override {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) return nullptr;
    return std::make_unique<SizedFile>(static_cast<std::uint64_t>(file.tellg()));
  }
};

}  // namespace omniset::test
