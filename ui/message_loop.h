// The one message loop of the main thread.
#pragma once

namespace omniset {

class Dialog;

// Handles messages until the program is told to quit; returns the code that came with that. Return
// pressed anywhere makes the main dialog take its package folder over. Raises what the handling of
// a message raised.
int runMessageLoop(Dialog& window);

}  // namespace omniset
