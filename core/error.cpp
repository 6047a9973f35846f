#include "core/error.h"

#include "core/format_text.h"
#include "core/os_error.h"

namespace omniset {

Error::Error(std::string_view callText) {
  const long code = lastOsError();
  message_.append(callText).append(": ").append(osErrorText(code));
  message_ += formatText("Error code: %ld", code);
}

long Error::lastError() const {
  return lastOsError();
}

long SocketExc::lastError() const {
  return lastSocketError();
}

}  // namespace omniset
