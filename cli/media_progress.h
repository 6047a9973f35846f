// Shows how far a disk or a floppy is.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <utility>

#include "cli/media_listener.h"
#include "cli/terminal.h"

namespace omniset {

// "/dev/sdb  Copying file: system.bdl  [####------]   45 %  0:12", at most `columns` wide, without
// a bar when there is no room for one.
std::string mediaLine(const std::string& device, const MediaState& state, Micros elapsed,
                      std::size_t columns);

// For files and pipes: a line for each status text.
class PlainMedia : public MediaListener {
 public:
  PlainMedia(std::ostream& err, std::string device) : err_(err), device_(std::move(device)) {}

  void changed(const MediaState& state) override;
  void ended(const MediaOutcome& outcome) override;

 private:
  void tell(const std::string& text);

  std::ostream& err_;
  const std::string device_;
  std::string told_;
};

// For terminals: one line that is redrawn in place.
class LiveMedia : public MediaListener {
 public:
  using SizeSource = std::function<std::optional<TerminalSize>()>;

  // `size` tells the terminal's present size.
  LiveMedia(std::ostream& err, std::string device, SizeSource size)
      : err_(err), device_(std::move(device)), size_(std::move(size)) {}

  void changed(const MediaState& state) override { state_ = state; }
  void tick(Micros now) override;
  // Leaves the terminal without the line.
  void ended(const MediaOutcome& outcome) override;

 private:
  std::ostream& err_;
  const std::string device_;
  SizeSource size_;
  std::optional<MediaState> state_;
  std::optional<Micros> startedAt_;
  Micros drawnAt_ = 0;
};

// Writes the result as the command's data.
class MediaResultLine : public MediaListener {
 public:
  MediaResultLine(std::ostream& out, std::string device) : out_(out), device_(std::move(device)) {}

  void changed(const MediaState&) override {}
  void ended(const MediaOutcome& outcome) override;

 private:
  std::ostream& out_;
  const std::string device_;
};

}  // namespace omniset
