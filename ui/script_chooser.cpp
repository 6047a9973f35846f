#include "ui/script_chooser.h"

#include <commdlg.h>

#include <array>

namespace omniset {

std::optional<std::string> chooseScriptFile(HWND owner) {
  std::array<char, 4096> path{};
  OPENFILENAMEA question{};
  question.lStructSize = sizeof question;
  question.hwndOwner = owner;
  question.lpstrFilter = "Script File (*.rsc)\0*.rsc\0All Files (*.*)\0*.*\0";
  question.lpstrFile = path.data();
  question.nMaxFile = static_cast<DWORD>(path.size());
  question.lpstrTitle = "Select script";
  // The package folder may be a relative one.
  question.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetOpenFileNameA(&question)) return std::nullopt;
  return std::string(path.data());
}

}  // namespace omniset
