// Shows the progress of an installation on standard error.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <ostream>

#include "cli/install_run.h"
#include "cli/progress_line.h"
#include "cli/terminal.h"

namespace omniset {

class ProgressDisplay : public InstallListener {
 public:
  // To be called about every 100 ms.
  virtual void tick(Micros now) = 0;
  // Leaves a line of other news, which is given without its end.
  virtual void note(const std::string& line) = 0;
};

// For files and pipes: a line for each change of status and for each tenth of the bytes.
class PlainProgress : public ProgressDisplay {
 public:
  explicit PlainProgress(std::ostream& err) : err_(err) {}

  void routerSeen(const MacAddress& mac, const std::string& label) override;
  void statusChanged(const RouterState& state) override;
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override;
  void tick(Micros now) override;
  void note(const std::string& line) override;

 private:
  struct Row {
    RouterState state;
    RateMeter rate;
    int tenthsTold = 0;
  };

  void tellTenths(Row& row);
  void tell(const MacAddress& mac, const std::string& text);

  std::ostream& err_;
  std::map<MacAddress, Row> rows_;
};

// For terminals: one line per router that is being installed, redrawn in place.
class LiveProgress : public ProgressDisplay {
 public:
  using SizeSource = std::function<std::optional<TerminalSize>()>;

  // `size` tells the terminal's present size. With `showResults` each finished router leaves its
  // result line behind.
  LiveProgress(std::ostream& err, SizeSource size, bool showResults)
      : err_(err), size_(std::move(size)), showResults_(showResults) {}

  void routerSeen(const MacAddress& mac, const std::string& label) override;
  void statusChanged(const RouterState& state) override;
  // These leave the terminal without the live lines until the next tick.
  void routerDone(const MacAddress& mac, bool ok, const std::string& text) override;
  void note(const std::string& line) override;
  void tick(Micros now) override;

 private:
  struct Row {
    RouterState state;
    RateMeter rate;
  };

  void leave(const std::string& text);
  std::string lines(const TerminalSize& size, std::size_t& count) const;

  std::ostream& err_;
  SizeSource size_;
  bool showResults_;
  std::map<MacAddress, Row> rows_;
  std::optional<Micros> drawnAt_;
  std::size_t drawn_ = 0;  // lines that stand above the cursor
};

}  // namespace omniset
