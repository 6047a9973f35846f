// A target's end of the link: a receiver that hears the installer.
#pragma once

#include "core/error.h"
#include "link/file_receiver.h"
#include "tests/fakes/captured_trace.h"
#include "tests/link/link_fixture.h"

namespace omniset::test {

inline LinkConnection targetConnection() {
  LinkConnection connection;
  connection.local = kTargetMac;
  connection.peer = kInstallerMac;
  connection.sequence = 4;
  connection.acknowledgement = 1;
  return connection;
}

// A frame of the installer.
inline LinkFrame control(int sequence, std::string_view text,
                         std::uint8_t channel = kControlChannel) {
  return makeFrame(kInstallerMac, kTargetMac, sequence, kNoAck, text, channel);
}
inline LinkFrame data(int sequence, std::string_view bytes) {
  return control(sequence, bytes, kDataChannel);
}

// The text of an Error without a system code, as the receiver raises them for the sender's faults.
inline std::string faultText(const std::string& text) {
  return errorText(text, 0);
}

}  // namespace omniset::test
