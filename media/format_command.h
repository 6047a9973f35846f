// The system's format command. A seam: `format` on Windows, mkfs.fat elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "media/volumes.h"

namespace omniset {

// A program with its command line as the system is given it.
struct FormatLine {
  std::string program;
  std::string commandLine;
};

// The command that runs. Whoever destroys it has awaited or ended it.
class FormatProcess {
 public:
  enum class Wait { kEnded, kRuns, kFailed };

  virtual ~FormatProcess() = default;
  // To its input; false when it could not be taken.
  virtual bool feed(std::string_view text) = 0;
  // What it has written since, as far as it is there now; empty when it is nothing.
  virtual std::string output(std::size_t most) = 0;
  virtual Wait wait(int timeoutMs) = 0;
  virtual bool terminate() = 0;
  // Lets go of process, thread and pipes; false when one of them could not be closed.
  virtual bool close() = 0;
};

class FormatCommand {
 public:
  virtual ~FormatCommand() = default;
  // Raises Error "GetSystemDirectory" or "GetWindowsDirectory".
  virtual FormatLine line(char letter) = 0;
  // Raises Failure "Cannot setup format", "Cannot setup format2" (the pipes of its input and its
  // output) and "Cannot start format".
  virtual std::unique_ptr<FormatProcess> start(const FormatLine& line) = 0;
};

// The system's own; see makeSystemVolumes().
std::unique_ptr<FormatCommand> makeSystemFormatCommand(const DeviceOfLetter& device = {});

// The line on Windows: `folder` is the system folder of the NT family, the Windows folder of 9x.
FormatLine windowsFormatLine(const SystemVersion& version, const std::string& folder, char letter);

}  // namespace omniset
