// The target's side of the install link, played frame by frame.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "link/link_frame.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {

// Numbers its frames as a target does and makes them when the test says so.
class ScriptedTarget {
 public:
  explicit ScriptedTarget(const MacAddress& mac = kTargetMac) : mac_(mac) {}

  const MacAddress& mac() const { return mac_; }

  LinkFrame announcement(const std::string& label = "router") const {
    return makeFrame(mac_, kNobody, 1, kNoAck, "DSCV\nversion\nmodel\n" + label + "\n");
  }

  // Takes a frame of the installer; false when it is not for this target or no news.
  bool hears(const LinkFrame& frame) {
    const FrameHeader header = frame.header();
    if (header.destination != mac_ || header.payloadLength == 0) return false;
    if (header.sequence != heard_ + 1) return false;
    heard_ = header.sequence;
    return true;
  }

  // The next frame with that text; it acknowledges what was heard last.
  LinkFrame says(std::string_view text) {
    return makeFrame(mac_, kInstallerMac, ++said_, heard_, text);
  }
  LinkFrame acknowledges() const { return makeFrame(mac_, kInstallerMac, said_ + 1, heard_); }

  int heard() const { return heard_; }

 private:
  MacAddress mac_;
  int said_ = 1;   // the announcement had the number 1
  int heard_ = 0;  // the installer's last payload-bearing frame
};

// A target that answers by itself and keeps the files it is sent.
class InstallingTarget {
 public:
  explicit InstallingTarget(const MacAddress& mac) : target_(mac) {}

  // The answer to a frame of the installer, if it draws one.
  std::optional<LinkFrame> answerTo(const LinkFrame& frame) {
    if (frame.header().destination != target_.mac()) return std::nullopt;
    if (!target_.hears(frame)) {
      if (!accepted_ || started_ || frame.header().payloadLength != 0) return std::nullopt;
      started_ = true;
      return target_.says("STRT\n");
    }
    const std::string_view text = frame.payloadText();
    if (!accepted_) {
      accepted_ = true;
      return target_.says("YACK\n");
    }
    if (frame.header().channel == kDataChannel) {
      files_[file_].append(text);
    } else if (text.starts_with("FILE\n")) {
      file_ = text.substr(5, text.find('\n', 5) - 5);
      files_[file_];
    } else if (text.starts_with("TERM\n")) {
      rebooted_ = true;
    }
    return target_.acknowledges();
  }

  const std::map<std::string, std::string>& files() const { return files_; }
  bool rebooted() const { return rebooted_; }

 private:
  ScriptedTarget target_;
  bool accepted_ = false;
  bool started_ = false;
  bool rebooted_ = false;
  std::string file_;
  std::map<std::string, std::string> files_;
};

}  // namespace omniset::test
