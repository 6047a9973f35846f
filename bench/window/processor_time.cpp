#include "bench/window/processor_time.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include "tests/win/driver/waiting.h"

namespace omniset::bench {

namespace fs = std::filesystem;

namespace {

constexpr char kProcesses[] = "Z:\\proc";
constexpr std::size_t kLongestName = 15;  // the system keeps no more of it

// Empty when the process has ended meanwhile.
std::string contentOf(const fs::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

bool isOf(const fs::path& process, const std::string& name, const std::string& environmentText) {
  return contentOf(process / "comm") == name.substr(0, kLongestName) + "\n" &&
         contentOf(process / "environ").find(environmentText) != std::string::npos;
}

}  // namespace

// Processes come and go meanwhile.
ProcessorTime::ProcessorTime(const std::string& programName, const std::string& environmentText) {
  std::error_code gone;
  for (fs::directory_iterator process(kProcesses, gone), end; process != end;
       process.increment(gone)) {
    if (isOf(process->path(), programName, environmentText)) folder_ = process->path().string();
  }
  if (folder_.empty()) throw test::WindowFault("no process runs " + programName);
}

// The first number of the file is the time on a processor, in nanoseconds.
double ProcessorTime::seconds() const {
  double nanoseconds = 0;
  std::error_code gone;
  for (fs::directory_iterator thread(folder_ + "\\task", gone), end; thread != end;
       thread.increment(gone)) {
    double ofThread = 0;
    std::ifstream(thread->path() / "schedstat") >> ofThread;
    nanoseconds += ofThread;
  }
  if (nanoseconds == 0) throw test::WindowFault("no processor time is told by " + folder_);
  return nanoseconds / 1e9;
}

}  // namespace omniset::bench
