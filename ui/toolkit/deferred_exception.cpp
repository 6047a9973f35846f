#include "ui/toolkit/deferred_exception.h"

#include <utility>

namespace omniset {

namespace {
std::exception_ptr kept;
ModalScope* innermost = nullptr;
}  // namespace

void deferException(std::exception_ptr exception) {
  if (!kept) kept = std::move(exception);
  if (innermost != nullptr) innermost->end();
  // A message that was sent, not posted, does not return from the loop's wait for the next one.
  PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void rethrowDeferredException() {
  if (kept) std::rethrow_exception(std::exchange(kept, nullptr));
}

ModalScope::ModalScope() : outer_(innermost) {
  innermost = this;
}

ModalScope::~ModalScope() {
  innermost = outer_;
}

void ModalScope::end() const {
  if (dialog_ != nullptr) EndDialog(dialog_, -1);
}

}  // namespace omniset
