#include <algorithm>

#include "core/error.h"
#include "core/rest_win32.h"
#include "media/format_command.h"
#include "media/handle_win32.h"

namespace omniset {

namespace {

struct Pipe {
  Win32Handle readEnd;
  Win32Handle writeEnd;
};

Pipe makePipe(const char* failure) {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, &inheritable, 0)) throw Failure(failure);
  return {Win32Handle(readEnd), Win32Handle(writeEnd)};
}

class Format : public FormatProcess {
 public:
  Format(Pipe input, Pipe output, const PROCESS_INFORMATION& process)
      : input_(std::move(input)),
        output_(std::move(output)),
        process_(process.hProcess),
        thread_(process.hThread) {}

  bool feed(std::string_view text) override {
    DWORD written = 0;
    return WriteFile(input_.writeEnd.get(), text.data(), static_cast<DWORD>(text.size()), &written,
                     nullptr) &&
           written == text.size();
  }

  // Only what is there: a read would wait for ever on a command that says nothing and does not end.
  std::string output(std::size_t most) override {
    DWORD ready = 0;
    if (!PeekNamedPipe(output_.readEnd.get(), nullptr, 0, nullptr, &ready, nullptr) || ready == 0) {
      return {};
    }
    std::string text(std::min<std::size_t>(most, ready), '\0');
    DWORD count = 0;
    if (!ReadFile(output_.readEnd.get(), text.data(), static_cast<DWORD>(text.size()), &count,
                  nullptr)) {
      return {};
    }
    text.resize(count);
    return text;
  }

  Wait wait(int timeoutMs) override {
    const Rest rest;
    switch (WaitForSingleObject(process_.get(), static_cast<DWORD>(timeoutMs))) {
      case WAIT_OBJECT_0:
        return Wait::kEnded;
      case WAIT_TIMEOUT:
        return Wait::kRuns;
      default:
        return Wait::kFailed;
    }
  }

  bool terminate() override { return TerminateProcess(process_.get(), 1); }

  bool close() override {
    bool closed = true;
    for (Win32Handle* handle : {&process_, &thread_, &input_.readEnd, &input_.writeEnd,
                                &output_.readEnd, &output_.writeEnd}) {
      closed = handle->close() && closed;
    }
    return closed;
  }

 private:
  Pipe input_;
  Pipe output_;
  Win32Handle process_;
  Win32Handle thread_;
};

class SystemFormat : public FormatCommand {
 public:
  explicit SystemFormat(SystemVersion version) : version_(version) {}

  FormatLine line(char letter) override {
    char folder[MAX_PATH] = "";
    const UINT length = version_.isNt ? GetSystemDirectoryA(folder, sizeof folder)
                                      : GetWindowsDirectoryA(folder, sizeof folder);
    if (length == 0 || length >= sizeof folder) {
      throw Error(version_.isNt ? "GetSystemDirectory" : "GetWindowsDirectory");
    }
    return windowsFormatLine(version_, folder, letter);
  }

  std::unique_ptr<FormatProcess> start(const FormatLine& line) override {
    Pipe input = makePipe("Cannot setup format");
    Pipe output = makePipe("Cannot setup format2");
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    startup.hStdInput = input.readEnd.get();
    startup.hStdOutput = output.writeEnd.get();
    startup.hStdError = output.writeEnd.get();
    PROCESS_INFORMATION process{};
    std::string commandLine = line.commandLine;
    if (!CreateProcessA(line.program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0,
                        nullptr, nullptr, &startup, &process)) {
      throw Failure("Cannot start format");
    }
    return std::make_unique<Format>(std::move(input), std::move(output), process);
  }

 private:
  SystemVersion version_;
};

}  // namespace

std::unique_ptr<FormatCommand> makeSystemFormatCommand(const DeviceOfLetter& device) {
  return std::make_unique<SystemFormat>(makeSystemVolumes(device)->version());
}

}  // namespace omniset
