// The message queue of the test's thread.
#pragma once

namespace omniset::test {

// Dispatches what waits in the queue, without waiting for more.
void pumpMessages();

}  // namespace omniset::test
