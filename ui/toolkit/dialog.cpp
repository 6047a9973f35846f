#include "ui/toolkit/dialog.h"

#include "core/error.h"
#include "ui/toolkit/deferred_exception.h"
#include "ui/toolkit/instance.h"

namespace omniset {

Dialog::~Dialog() {
  destroy();
}

void Dialog::create(int templateId, HWND parent) {
  const HWND made = CreateDialogParamA(moduleInstance(), MAKEINTRESOURCEA(templateId), parent,
                                       &Dialog::procedure, reinterpret_cast<LPARAM>(this));
  if (made == nullptr) {
    const Error failure("CreateDialog");
    rethrowDeferredException();
    throw failure;
  }
  try {
    rethrowDeferredException();
  } catch (...) {
    destroy();
    throw;
  }
}

INT_PTR Dialog::runModal(int templateId, HWND parent) {
  ModalScope scope;
  modal_ = &scope;
  const INT_PTR result = DialogBoxParamA(moduleInstance(), MAKEINTRESOURCEA(templateId), parent,
                                         &Dialog::procedure, reinterpret_cast<LPARAM>(this));
  // The result alone does not tell a failure: a dialog may end with any number.
  const Error failure("CreateDialog");
  modal_ = nullptr;
  rethrowDeferredException();
  if (!scope.wasOpened()) throw failure;
  return result;
}

void Dialog::endModal(INT_PTR result) const {
  EndDialog(handle(), result);
}

INT_PTR Dialog::dialogProcedure(UINT message, WPARAM, LPARAM) {
  return message == WM_INITDIALOG ? TRUE : FALSE;
}

void Dialog::bind(HWND handle) {
  SetWindowLongPtrA(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  handle_ = handle;
  if (modal_ != nullptr) modal_->open(handle);
}

INT_PTR CALLBACK Dialog::procedure(HWND handle, UINT message, WPARAM word, LPARAM value) {
  if (message == WM_INITDIALOG) reinterpret_cast<Dialog*>(value)->bind(handle);
  auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrA(handle, GWLP_USERDATA));
  if (self == nullptr) return FALSE;
  INT_PTR result = FALSE;
  try {
    result = self->dialogProcedure(message, word, value);
  } catch (...) {
    deferException(std::current_exception());
  }
  unbindAfter(message, handle, *self);
  return result;
}

}  // namespace omniset
