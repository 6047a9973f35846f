// A store and a console that remember what they were told.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "target/target_session.h"
#include "target/target_store.h"

namespace omniset::test {

struct FakeStore : TargetStore {
  void beginPreparation(bool keepConfiguration) override {
    note(keepConfiguration ? "prepare, keep" : "prepare");
    failIf("prepare");
  }
  bool isPrepared() override {
    ++polls;
    failIf("isPrepared");
    return prepared;
  }
  void openFile(const std::string& name, std::int32_t size) override {
    note("open " + name + " " + std::to_string(size));
    failIf("open");
    content.clear();
  }
  void write(std::span<const std::uint8_t> bytes) override {
    note("write " + std::to_string(bytes.size()));
    failIf("write");
    content += asText(bytes);
  }
  void closeFile() override {
    note("close");
    failIf("close");
  }
  void finish() override {
    note("finish");
    failIf("finish");
  }
  void abandon() override {
    note("abandon");
    failIf("abandon");
  }

  void note(const std::string& call) {
    calls.push_back(call);
    if (onCall) onCall();
  }
  void failIf(const std::string& operation) const {
    if (failing == operation) throw Failure("Cannot " + operation);
  }

  std::vector<std::string> calls;
  std::function<void()> onCall;  // may be empty
  std::string failing;           // the operation of this name raises "Cannot NAME"
  std::string content;           // what was written to the file opened last
  bool prepared = true;
  int polls = 0;
};

struct FakeConsole : TargetConsole {
  void say(const MacAddress& target, const std::string& sentence) override {
    sentences.push_back(sentence);
    speakers.push_back(target);
  }

  void progress(const MacAddress& /*target*/, const std::string& file, std::int32_t stored,
                std::int32_t size) override {
    progresses.push_back(file + " " + std::to_string(stored) + "/" + std::to_string(size));
  }

  std::vector<std::string> sentences;
  std::vector<std::string> progresses;
  std::vector<MacAddress> speakers;
};

}  // namespace omniset::test
