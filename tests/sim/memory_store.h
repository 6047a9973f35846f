// The disk of a simulated target: keeps its files over restarts, takes its time to be prepared, and
// fails when it is told to.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "core/clock.h"
#include "target/target_store.h"

namespace omniset::sim {

class MemoryStore : public TargetStore {
 public:
  MemoryStore(const Clock& clock, Micros preparationTime)
      : clock_(clock), preparationTime_(preparationTime) {}

  void beginPreparation(bool keepConfiguration) override;
  bool isPrepared() override;
  void openFile(const std::string& name, std::int32_t size) override;
  void write(std::span<const std::uint8_t> bytes) override;
  void closeFile() override;
  void finish() override {}
  void abandon() override { open_.reset(); }

  // The next write fails, as on a full disk.
  void failNextWrite() { failing_ = true; }

  // Complete files by name.
  const std::map<std::string, std::string>& files() const { return files_; }
  bool keptConfiguration() const { return keptConfiguration_; }

 private:
  struct OpenFile {
    std::string name;
    std::size_t size;
    std::string content;
  };

  const Clock& clock_;
  Micros preparationTime_;
  Micros preparedAt_ = 0;
  bool failing_ = false;
  bool keptConfiguration_ = false;
  std::optional<OpenFile> open_;
  std::map<std::string, std::string> files_;
};

}  // namespace omniset::sim
