#include <sys/socket.h>

#include "core/error.h"
#include "media/child_process_posix.h"
#include "media/drive_facts_posix.h"
#include "media/format_command.h"

namespace omniset {

namespace {

constexpr std::uint64_t kLargestFat12 = 16 << 20;

class MakeFat : public FormatProcess {
 public:
  MakeFat(Stream input, Stream output, std::unique_ptr<ChildProcess> process)
      : input_(std::move(input)), output_(std::move(output)), process_(std::move(process)) {}

  bool feed(std::string_view text) override {
    return send(input_.ours.get(), text.data(), text.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(text.size());
  }

  std::string output(std::size_t most) override {
    std::string text(most, '\0');
    const ssize_t count = recv(output_.ours.get(), text.data(), text.size(), MSG_DONTWAIT);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
  }

  Wait wait(int timeoutMs) override {
    return process_->awaitExit(timeoutMs) ? Wait::kEnded : Wait::kRuns;
  }

  bool terminate() override { return process_->terminate(); }

  bool close() override {
    process_.reset();
    const bool inputsClosed = input_.ours.close() && input_.childs.close();
    return output_.ours.close() && output_.childs.close() && inputsClosed;
  }

 private:
  // Both ends stay open until the end: what is fed early or late meets a reader.
  Stream input_;
  Stream output_;
  std::unique_ptr<ChildProcess> process_;
};

Stream requiredStream(const char* failure) {
  auto stream = makeStream();
  if (!stream) throw Failure(failure);
  return std::move(*stream);
}

class MakeFatCommand : public FormatCommand {
 public:
  explicit MakeFatCommand(std::string device) : device_(std::move(device)) {}

  FormatLine line(char) override {
    const std::string program = findProgram("mkfs.fat");
    arguments_ = {program.empty() ? "mkfs.fat" : program};
    const std::uint64_t bytes = driveBytes(device_);
    // -I: the whole disk, without partitions.
    for (const char* option : {"-I", "-F", bytes <= kLargestFat12 ? "12" : "16"}) {
      arguments_.push_back(option);
    }
    arguments_.push_back(device_);
    if (bytes > kMostUsed) arguments_.push_back(std::to_string(kMostUsed / 1024));
    std::string text;
    for (const std::string& argument : arguments_) text += (text.empty() ? "" : " ") + argument;
    return {arguments_.front(), text};
  }

  std::unique_ptr<FormatProcess> start(const FormatLine&) override {
    Stream input = requiredStream("Cannot setup format");
    Stream output = requiredStream("Cannot setup format2");
    auto process = ChildProcess::start(
        arguments_, {.input = input.childs, .output = output.childs, .errors = output.childs});
    if (!process) throw Failure("Cannot start format");
    return std::make_unique<MakeFat>(std::move(input), std::move(output), std::move(process));
  }

 private:
  std::string device_;
  std::vector<std::string> arguments_;
};

}  // namespace

std::unique_ptr<FormatCommand> makeSystemFormatCommand(const DeviceOfLetter& device) {
  return std::make_unique<MakeFatCommand>(device.device);
}

}  // namespace omniset
