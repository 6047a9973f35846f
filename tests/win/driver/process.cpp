#include "tests/win/driver/process.h"

#include <fstream>

namespace omniset::test {

namespace {

constexpr UINT kKilled = 99;

HANDLE createInheritableFile(const std::string& path) {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) throw WindowFault("cannot create " + path);
  return file;
}

}  // namespace

Process::Process(const std::string& program, const std::string& outputFile)
    : outputFile_(outputFile) {
  const HANDLE output = createInheritableFile(outputFile);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output;
  startup.hStdError = output;
  std::string commandLine = "\"" + program + "\"";
  const BOOL started = CreateProcessA(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                                      0, nullptr, nullptr, &startup, &information_);
  const DWORD error = GetLastError();
  CloseHandle(output);
  if (!started) throw WindowFault("cannot start " + program + ": error " + std::to_string(error));
}

Process::~Process() {
  kill();
  CloseHandle(information_.hThread);
  CloseHandle(information_.hProcess);
}

bool Process::isRunning() const {
  return WaitForSingleObject(handle(), 0) == WAIT_TIMEOUT;
}

DWORD Process::waitForEnd(Milliseconds limit) const {
  waitUntil(
      "the program's end", [this] { return !isRunning(); }, {}, limit);
  DWORD code = 0;
  GetExitCodeProcess(handle(), &code);
  return code;
}

void Process::kill() {
  if (!isRunning()) return;
  TerminateProcess(handle(), kKilled);
  WaitForSingleObject(handle(), INFINITE);
}

std::vector<std::string> Process::outputLines() const {
  std::ifstream file(outputFile_, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

}  // namespace omniset::test
