#include "ui/maker.h"

#include "core/error.h"
#include "resources/resource_ids.h"
#include "ui/registry.h"
#include "ui/settings.h"

namespace omniset {

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerMs = 250;
// As much of a label as can be read again from the settings.
constexpr WPARAM kLongestLabel = 255;

}  // namespace

void Maker::run(HWND parent) {
  {
    Registry settings(registry_, kSettingsKey);
    making_ = std::make_unique<FloppyMaking>(*this, service_, readFloppyLabel(settings));
  }
  runModal(IDD_MAKER, parent);
  writeFloppyLabel(registry_, making_->label());
}

INT_PTR Maker::dialogProcedure(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_INITDIALOG:
      setProgressRange(IDC_MAKER_PROGRESS, 0, 100);
      SendMessageA(control(IDC_MAKER_LABEL), EM_LIMITTEXT, kLongestLabel, 0);
      making_->begin();
      if (!SetTimer(handle(), kTimer, kTimerMs, nullptr)) throw Error("SetTimer");
      return TRUE;
    case WM_TIMER:
      making_->tick();
      return TRUE;
    case WM_COMMAND:
      return HIWORD(word) == BN_CLICKED && command(LOWORD(word)) ? TRUE : FALSE;
    default:
      return Dialog::dialogProcedure(message, word, value);
  }
}

bool Maker::command(int id) {
  switch (id) {
    case IDC_MAKER_START:
      making_->start();
      return true;
    case IDC_MAKER_CANCEL:
      making_->cancel();
      return true;
    case IDC_MAKER_DONE:
    case IDCANCEL:  // the Escape key and the window's own close button
      making_->close();
      return true;
    default:
      return false;
  }
}

std::string Maker::label() const {
  return text(IDC_MAKER_LABEL);
}

void Maker::showLabel(const std::string& label) {
  setText(IDC_MAKER_LABEL, label);
}

void Maker::showExplanation(const std::string& text) {
  setText(IDC_MAKER_EXPLANATION, text);
}

void Maker::showStatus(const std::string& text) {
  setText(IDC_MAKER_STATUS, text);
}

void Maker::showProgress(int percent) {
  setProgress(IDC_MAKER_PROGRESS, percent);
}

// The keyboard goes on before the control that has it is disabled: there it would be lost.
void Maker::showRunning(bool running) {
  enable(running ? IDC_MAKER_CANCEL : IDC_MAKER_START, true);
  if (!isEnabled(IDC_MAKER_LABEL) || running)
    moveFocus(running ? IDC_MAKER_CANCEL : IDC_MAKER_START);
  enable(IDC_MAKER_LABEL, !running);
  enable(IDC_MAKER_START, !running);
  enable(IDC_MAKER_DONE, !running);
  enable(IDC_MAKER_CANCEL, running);
}

void Maker::moveFocus(int id) {
  SendMessageA(handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(id)), TRUE);
}

void Maker::close() {
  endModal(IDOK);
}

}  // namespace omniset
