#include "ui/folder_browser.h"

#include <objbase.h>
#include <shlobj.h>

#include <array>
#include <memory>

#include "core/format_text.h"
#include "core/trace.h"
#include "packages/folder_listing.h"
#include "ui/toolkit/deferred_exception.h"

namespace omniset {

namespace {

struct IdListFree {
  void operator()(ITEMIDLIST* list) const { CoTaskMemFree(list); }
};

std::optional<std::string> pathOf(const ITEMIDLIST* list) {
  std::array<char, MAX_PATH> path{};
  if (!SHGetPathFromIDListA(list, path.data())) return std::nullopt;
  return std::string(path.data());
}

void showCount(HWND browser, const ITEMIDLIST* selection) {
  const auto path = pathOf(selection);
  const std::size_t count = path ? listPackageFiles(*path).size() : 0;
  const std::string text =
      count == 0 ? std::string("No packages in this directory")
                 : formatText("There are %d package(s) in this directory", static_cast<int>(count));
  SendMessageA(browser, BFFM_SETSTATUSTEXTA, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void follow(HWND browser, UINT message, LPARAM selection, LPARAM present) {
  if (message == BFFM_INITIALIZED) {
    const auto& path = *reinterpret_cast<const std::string*>(present);
    SendMessageA(browser, BFFM_SETSELECTIONA, TRUE, reinterpret_cast<LPARAM>(path.c_str()));
    traceLine("init path: " + path);
  }
  if (message == BFFM_SELCHANGED) {
    showCount(browser, reinterpret_cast<const ITEMIDLIST*>(selection));
  }
}

// `present` is the folder to begin with, a std::string.
int CALLBACK followBrowser(HWND browser, UINT message, LPARAM selection, LPARAM present) {
  try {
    follow(browser, message, selection, present);
  } catch (...) {
    deferException(std::current_exception());
  }
  return 0;
}

}  // namespace

std::optional<std::string> browseFolder(HWND owner, const std::string& present) {
  BROWSEINFOA info{};
  info.hwndOwner = owner;
  info.lpszTitle = "Select package directory:";
  info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT;
  info.lpfn = followBrowser;
  info.lParam = reinterpret_cast<LPARAM>(&present);
  const std::unique_ptr<ITEMIDLIST, IdListFree> chosen(SHBrowseForFolderA(&info));
  return chosen ? pathOf(chosen.get()) : std::nullopt;
}

}  // namespace omniset
