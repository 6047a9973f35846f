#include "tests/win/show/stage.h"

#include <cstdlib>

#include "resources/resource_ids.h"

namespace omniset::test {

namespace {

constexpr DWORD kPaintingMs = 400;
constexpr Milliseconds kInstallationLimit{60'000};

std::string required(const char* variable) {
  const char* value = std::getenv(variable);
  if (!value) throw WindowFault(std::string(variable) + " is not set");
  return value;
}

}  // namespace

Stage::Stage()
    : folder_(required("OMNISET_TEST_FOLDER")),
      program_(required("OMNISET_TEST_PROGRAM")),
      host_(folder_ + "\\host") {}

WindowUnderTest& Stage::open() {
  window_.reset();
  const std::string trace = path("trace-" + std::to_string(++starts_) + ".txt");
  window_ = std::make_unique<WindowUnderTest>(program_, trace);
  return *window_;
}

void Stage::close() {
  const DWORD code = window_->end();
  window_.reset();
  if (code != 0) throw WindowFault("the program ended with code " + std::to_string(code));
}

void Stage::startTarget(const std::string& name, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"start", name});
  host_.request(arguments);
}

void Stage::attachDrive(char letter, UINT type, int megabytes) {
  const std::string folder =
      host_.request({"insert-drive", std::string(1, letter), std::to_string(megabytes)});
  test::attachDrive(letter, type, folder, folder + ".img");
}

void Stage::startPc(const std::string& name, std::vector<std::string> settings) {
  settings.insert(settings.begin(), {"start-pc", name});
  host_.request(settings);
}

std::string Stage::awaitRouter() {
  waitUntil(
      "a router in the list", [&] { return !window().routers().rows().empty(); }, {},
      kInstallationLimit);
  return window().routers().row(0).texts.at(kLabelColumn);
}

void Stage::awaitStatus(const std::string& label, const std::string& status) {
  const auto shown = [&] {
    for (const ListRow& row : window().routers().rows()) {
      if (row.texts.at(kLabelColumn) == label) return row.texts.at(kStatusColumn);
    }
    return std::string("not in the list");
  };
  waitUntil(
      "the router \"" + label + "\" is \"" + status + "\"", [&] { return shown() == status; },
      [&] { return shown() + ", " + window().text(IDC_STATUS_LINE); }, kInstallationLimit);
}

void Stage::selectRouter(const std::string& label) {
  window().selectRouter(window().routers().find(label));
}

void Stage::pressInstall(const std::string& as) {
  window().awaitText(IDC_INSTALL, as);
  window().click(IDC_INSTALL);
}

// Nobody tells when everything has been painted.
void Stage::picture(const std::string& name) {
  window().settle();
  Sleep(kPaintingMs);
  host_.request({"picture", name});
}

}  // namespace omniset::test
