// The operating system's error codes and their texts.
#pragma once

#include <string>

namespace omniset {

// The calling thread's last error code (GetLastError, errno).
long lastOsError();

// The calling thread's last socket error code (WSAGetLastError, errno).
long lastSocketError();

// Sets the calling thread's last error code, so that a seam can report a failure of its own in the
// same way as a failed call.
void setLastOsError(long code);

// The system's text for a code, at most 99 characters, normally ending in a line break; empty when
// the system does not know the code. Leaves the last error code as it was.
std::string osErrorText(long code);

// The system's code for "the caller does not own this" (release of a mutex held by another thread).
long osErrorNotOwner();

}  // namespace omniset
