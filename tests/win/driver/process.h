// A Windows program that a test starts and watches.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/win/driver/waiting.h"

namespace omniset::test {

class Process {
 public:
  // Starts the program. What it writes to its standard output goes to the file.
  Process(const std::string& program, const std::string& outputFile);
  // Ends the program if it still runs.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  HANDLE handle() const { return information_.hProcess; }
  DWORD id() const { return information_.dwProcessId; }
  DWORD threadId() const { return information_.dwThreadId; }
  bool isRunning() const;
  // The exit code; raises WindowFault if the program does not end in time.
  DWORD waitForEnd(Milliseconds limit = kPatience) const;
  // Ends the program as a crash would: it gets no chance to clean up.
  void kill();
  // The lines of the standard output so far, without their ends.
  std::vector<std::string> outputLines() const;

 private:
  PROCESS_INFORMATION information_{};
  std::string outputFile_;
};

}  // namespace omniset::test
