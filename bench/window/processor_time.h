// The processor time of a program that runs under Wine. Wine's own call tells it of the caller
// alone, so the figures are those of the system beneath, which Wine shows as a drive.
#pragma once

#include <string>

namespace omniset::bench {

class ProcessorTime {
 public:
  // The process with this program file that belongs to this run: the one in whose environment the
  // text is found. Raises WindowFault when there is none.
  ProcessorTime(const std::string& programName, const std::string& environmentText);

  // Seconds, of all threads that run now.
  double seconds() const;

 private:
  std::string folder_;
};

}  // namespace omniset::bench
