#include "ui/window_operator.h"

#include "ui/folder_browser.h"
#include "ui/script_chooser.h"
#include "ui/set_name.h"

namespace omniset {

void WindowOperator::tell(const char* caption, const std::string& text, Icon icon) {
  MessageBoxA(dialog_.handle(), text.c_str(), caption,
              MB_OK | (icon == Icon::kError ? MB_ICONERROR : 0u));
}

bool WindowOperator::ask(const char* caption, const std::string& text) {
  return MessageBoxA(dialog_.handle(), text.c_str(), caption, MB_YESNO) == IDYES;
}

bool WindowOperator::warn(const std::string& text) {
  return MessageBoxA(dialog_.handle(), text.c_str(), "Warning",
                     MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) == IDYES;
}

std::optional<std::string> WindowOperator::nameSet(const std::string& proposal) {
  SetName prompt(proposal);
  if (!prompt.ask(dialog_.handle())) return std::nullopt;
  return prompt.name();
}

std::optional<std::string> WindowOperator::chooseFolder(const std::string& present) {
  return browseFolder(dialog_.handle(), present);
}

std::optional<std::string> WindowOperator::chooseScript() {
  return chooseScriptFile(dialog_.handle());
}

}  // namespace omniset
