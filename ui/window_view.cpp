#include "ui/window_view.h"

#include <algorithm>

#include "resources/resource_ids.h"

namespace omniset {

namespace {

int lineOf(std::int32_t baudRate) {
  const auto found = std::find(kBaudRates.begin(), kBaudRates.end(), baudRate);
  return static_cast<int>(found - kBaudRates.begin());
}

}  // namespace

void WindowView::prepare() {
  for (const std::int32_t rate : kBaudRates) {
    dialog_.addLine(IDC_BAUD_RATE, std::to_string(rate));
  }
  dialog_.setProgressRange(IDC_PROGRESS, 0, 100);
}

ParameterFields WindowView::fields() const {
  ParameterFields fields;
  fields.keepConfiguration = dialog_.isChecked(IDC_KEEP_CONFIGURATION);
  fields.address = dialog_.text(IDC_ADDRESS);
  fields.netmask = dialog_.text(IDC_NETMASK);
  fields.gateway = dialog_.text(IDC_GATEWAY);
  const auto line = static_cast<std::size_t>(dialog_.selectedLine(IDC_BAUD_RATE));
  if (line < kBaudRates.size()) fields.baudRate = kBaudRates[line];
  fields.useScript = dialog_.isChecked(IDC_USE_SCRIPT);
  fields.scriptFile = dialog_.text(IDC_SCRIPT_FILE);
  return fields;
}

// A speed that is not in the list, from an older version's settings, is shown as the usual one.
void WindowView::showFields(const ParameterFields& fields) {
  dialog_.setChecked(IDC_KEEP_CONFIGURATION, fields.keepConfiguration);
  dialog_.setText(IDC_ADDRESS, fields.address);
  dialog_.setText(IDC_NETMASK, fields.netmask);
  dialog_.setText(IDC_GATEWAY, fields.gateway);
  const int line = lineOf(fields.baudRate);
  const bool known = line < static_cast<int>(kBaudRates.size());
  dialog_.selectLine(IDC_BAUD_RATE, known ? line : lineOf(kDefaultBaudRate));
  dialog_.setChecked(IDC_USE_SCRIPT, fields.useScript);
  dialog_.setText(IDC_SCRIPT_FILE, fields.scriptFile);
}

void WindowView::showControls(const ControlStates& states) {
  dialog_.setText(IDC_INSTALL, states.installLabel);
  dialog_.enable(IDC_INSTALL, states.install);
  dialog_.enable(IDC_CANCEL, states.cancel);
  dialog_.enable(IDC_KEEP_CONFIGURATION, states.keepConfiguration);
  showField(IDC_ADDRESS, states.address);
  showField(IDC_NETMASK, states.address);
  showField(IDC_GATEWAY, states.address);
  dialog_.enable(IDC_BAUD_RATE, states.baudRate);
  dialog_.enable(IDC_USE_SCRIPT, states.useScript);
  showField(IDC_SCRIPT_FILE, states.scriptFile);
  dialog_.enable(IDC_CHOOSE_SCRIPT, states.chooseScript);
  dialog_.enable(IDC_SELECT_ALL, states.marks);
  dialog_.enable(IDC_SELECT_NONE, states.marks);
  dialog_.enable(IDC_SAVE_SET, states.saveSet);
  dialog_.enable(IDC_DELETE_SET, states.deleteSet);
  keepFocus();
}

void WindowView::keepFocus() {
  const HWND focus = GetFocus();
  if (!focus || IsWindowEnabled(focus)) return;
  SendMessageA(dialog_.handle(), WM_NEXTDLGCTL,
               reinterpret_cast<WPARAM>(dialog_.control(IDC_ROUTERS)), TRUE);
}

void WindowView::showField(int id, FieldState state) {
  dialog_.enable(id, state != FieldState::kDisabled);
  dialog_.setReadOnly(id, state == FieldState::kReadOnly);
}

void WindowView::showPackagesTitle(const std::string& title) {
  dialog_.setText(IDC_PACKAGES_GROUP, title);
}

void WindowView::showStatusLine(const std::string& text) {
  dialog_.setText(IDC_STATUS_LINE, text);
}

void WindowView::showProgress(int percent) {
  dialog_.setProgress(IDC_PROGRESS, percent);
}

void WindowView::showMarks(const PackageMarks& marks) {
  packageRows_.showMarks(marks);
}

int WindowView::packageAtMark() const {
  return ListView(dialog_.control(IDC_PACKAGES)).selectionMark();
}

void WindowView::addSet(const std::string& name) {
  dialog_.addLine(IDC_SETS, name);
}

void WindowView::removeSet(const std::string& name) {
  const int line = dialog_.findLine(IDC_SETS, name);
  if (line >= 0) dialog_.deleteLine(IDC_SETS, line);
}

void WindowView::chooseSet(const std::string& name) {
  dialog_.selectLine(IDC_SETS, dialog_.findLine(IDC_SETS, name));
}

void WindowView::chooseNoSet() {
  dialog_.selectLine(IDC_SETS, -1);
}

std::optional<std::string> WindowView::chosenSet() const {
  const int line = dialog_.selectedLine(IDC_SETS);
  if (line < 0) return std::nullopt;
  return dialog_.lineText(IDC_SETS, line);
}

std::string WindowView::folder() const {
  return dialog_.text(IDC_FOLDER);
}

void WindowView::showFolder(const std::string& folder) {
  dialog_.setText(IDC_FOLDER, folder);
}

}  // namespace omniset
