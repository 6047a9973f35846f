// What the command line's exit status says.
#pragma once

namespace omniset {

constexpr int kExitDone = 0;      // everything that was asked for
constexpr int kExitFailed = 1;    // a router, the network or the output failed
constexpr int kExitBadInput = 2;  // arguments or files: nothing was started
constexpr int kExitNoRouter = 3;  // none announced itself in time

}  // namespace omniset
