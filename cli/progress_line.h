// The texts that show how far an installation is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "cli/install_run.h"
#include "core/clock.h"

namespace omniset {

// "1452 B", "12.3 kB", "4.0 MB": decimal units.
std::string sizeText(std::int64_t bytes);

// "3.6 of 12.0 MB", both in the unit of the total.
std::string amountText(std::int64_t bytes, std::int64_t total);

// "0:07", "1:02:03", rounded up to whole seconds.
std::string durationText(Micros duration);

// 0 to 100, rounded down: 100 only when everything is done.
int percentOf(std::int64_t done, std::int64_t total);

// "[####------]", in at most so many columns; empty when these are too few for one.
std::string progressBar(int percent, std::size_t columns);

// How fast bytes come, over the last few seconds.
class RateMeter {
 public:
  // To be told regularly, also when nothing moved. The time before the first byte does not count;
  // fewer bytes than before start it anew.
  void add(Micros now, std::int64_t bytes);
  // Nothing before there is enough to tell.
  std::optional<double> bytesPerSecond() const;

 private:
  struct Sample {
    Micros time;
    std::int64_t bytes;
  };
  std::deque<Sample> samples_;
};

// One router's line, at most `columns` wide: MAC address, status, then, while files are sent,
// percent, a bar if there is room, amount, rate and time left, else the status text.
std::string progressLine(const RouterState& state, std::optional<double> bytesPerSecond,
                         std::size_t columns);

// "02:00:00:01:02:03  ok      Installation finished successfully"
std::string resultLine(const MacAddress& mac, bool ok, const std::string& text);

}  // namespace omniset
