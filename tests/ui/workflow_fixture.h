// The workflow of the main window with the real installer, router list and catalogue, on a fake
// network, a fake window and simulated time. The operator's answers are prepared by the test.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/fake_network_interfaces.h"
#include "tests/fakes/fake_registry.h"
#include "tests/fakes/fake_udp_socket.h"
#include "tests/fakes/fake_volumes.h"
#include "tests/fakes/played_target.h"
#include "tests/fakes/temp_folder.h"
#include "tests/install/fake_router_rows.h"
#include "tests/packages/fake_package_view.h"
#include "tests/tools/bdl_builder.h"
#include "tests/ui/played_drive_job.h"
#include "ui/workflow/workflow.h"

namespace omniset::test {

class FakeMainView : public MainView {
 public:
  ParameterFields fields() const override { return typed; }
  void showFields(const ParameterFields& fields) override {
    typed = fields;
    ++timesFieldsShown;
  }
  void showControls(const ControlStates& states) override {
    controls = states;
    ++updates;
  }
  void showPackagesTitle(const std::string& text) override {
    title = text;
    ++updates;
  }
  void showStatusLine(const std::string& text) override {
    statusLine = text;
    ++updates;
  }
  void showProgress(int percent) override {
    progress = percent;
    ++updates;
  }
  void showMarks(const PackageMarks& shown) override { marks = shown; }
  int packageAtMark() const override { return atMark; }
  void addSet(const std::string& name) override { sets.push_back(name); }
  void removeSet(const std::string& name) override { std::erase(sets, name); }
  void chooseSet(const std::string& name) override { chosen = name; }
  void chooseNoSet() override { chosen.reset(); }
  std::optional<std::string> chosenSet() const override { return chosen; }
  std::string folder() const override { return folderField; }
  void showFolder(const std::string& folder) override { folderField = folder; }

  ParameterFields typed;
  int timesFieldsShown = 0;
  int updates = 0;  // of what the timer refreshes
  ControlStates controls;
  std::string title;
  std::string statusLine;
  int progress = -1;
  PackageMarks marks;
  int atMark = -1;
  std::vector<std::string> sets;
  std::optional<std::string> chosen;
  std::string folderField;
};

class FakeOperator : public Operator {
 public:
  void tell(const char* caption, const std::string& text, Icon icon) override {
    said.push_back(std::string(caption) + ": " + text);
    icons.push_back(icon);
  }
  bool ask(const char* caption, const std::string& text) override {
    said.push_back(std::string(caption) + ": " + text);
    if (whileAsked) whileAsked();
    return taken(answers).value_or(true);
  }
  bool warn(const std::string& text) override { return ask("Warning", text); }
  std::optional<std::string> nameSet(const std::string& proposal) override {
    proposals.push_back(proposal);
    if (whileAsked) whileAsked();
    return taken(names).value_or(std::nullopt);
  }
  std::optional<std::string> chooseFolder(const std::string& present) override {
    proposals.push_back(present);
    return taken(folders).value_or(std::nullopt);
  }
  std::optional<std::string> chooseScript() override {
    return taken(scripts).value_or(std::nullopt);
  }

  std::vector<std::string> said;
  std::vector<Icon> icons;
  std::vector<std::string> proposals;
  std::function<void()> whileAsked;
  std::deque<bool> answers;  // yes, when there is none
  // The operator cancels when there is none.
  std::deque<std::optional<std::string>> names, folders, scripts;

 private:
  template <class T>
  static std::optional<T> taken(std::deque<T>& prepared) {
    if (prepared.empty()) return std::nullopt;
    T first = prepared.front();
    prepared.pop_front();
    return first;
  }
};

inline MacAddress routerMac(std::uint8_t number) {
  return {{2, 0, 0, 0, 1, number}};
}

class WorkflowTest : public testing::Test {
 protected:
  // A folder with system, routing (depends on system) and wireless (depends on what is missing).
  WorkflowTest() {
    network->clock = &clock;
    addPackage({.name = "system", .description = "Base system", .payloadBytes = 20'000});
    addPackage({.name = "routing",
                .description = "Dynamic routing",
                .dependencies = {{"system", versionWord(1, 0), 0}},
                .payloadBytes = 5'000});
    addPackage(
        {.name = "wireless", .description = "Radio cards", .dependencies = {{"radio", 0, 0}}});
    workflow.begin();
    workflow.openFolder(folder.path());
  }

  void addPackage(const BdlPackage& package) const {
    folder.write(package.name + ".bdl", buildBdl(package));
  }

  PlayedTarget& addTarget(std::uint8_t number) {
    return targets.emplace_back(*network, routerMac(number), "rack " + std::to_string(number));
  }

  // A target that has announced itself and is in the list.
  PlayedTarget& announcedTarget(std::uint8_t number = 1) {
    PlayedTarget& target = addTarget(number);
    target.announce();
    turn();
    return target;
  }
  // The same, and it is the selected entry.
  PlayedTarget& selectedTarget(std::uint8_t number = 1) {
    PlayedTarget& target = announcedTarget(number);
    select(static_cast<int>(routers.count()) - 1);
    return target;
  }

  // As a list view reports it: before, and after the change.
  void select(int row) {
    workflow.selectionChanging();
    rows.select(row);
    workflow.selectionChanged();
  }

  int rowOf(const std::string& package) { return catalogue.findByName(package, true); }
  void toggle(const std::string& package) { workflow.togglePackage(rowOf(package)); }
  bool isMarked(const std::string& package) {
    return view.marks.at(static_cast<std::size_t>(rowOf(package)));
  }

  // One turn of the installer, of the targets and of the window's timer.
  void turn() {
    installer.step();
    const auto sent = std::move(network->sent);
    network->sent.clear();
    for (const auto& datagram : sent) {
      for (PlayedTarget& target : targets) target.take(datagram);
    }
    workflow.poll();
  }
  bool turnUntil(RouterStatus status, std::uint8_t number = 1) {
    for (int turns = 0; turns < 20'000; ++turns) {
      turn();
      if (routers.find(routerMac(number))->status == status) return true;
    }
    return false;
  }

  std::string statusOf(int row) const { return rows.at(row).texts[kStatusColumn]; }
  std::vector<std::string> set(const std::string& name) const {
    const auto* packages = sets.find(name);
    return packages ? *packages : std::vector<std::string>{"no such set"};
  }

  CapturedTrace trace;
  FakeClock clock;
  TempFolder folder;
  TempFolder temporary;
  FakeTempFiles tempFiles{temporary};
  FakeNetworkInterfaces interfaces{{{"eth0", {{2, 0, 0, 0, 0, 1}}}}};
  std::shared_ptr<FakeNetwork> network = std::make_shared<FakeNetwork>();
  RouterInstaller installer{
      0, InstallerServices{interfaces, std::make_unique<FakeUdpSocket>(network), clock, tempFiles}};
  std::deque<PlayedTarget> targets;
  FakeRouterRows rows;
  RouterList routers{rows, clock};
  FakePackageRows packageRows;
  FakeStatusText statusBar;
  PackageCatalogue catalogue{packageRows, statusBar};
  FakeOperator person;
  VolumesWithFiles volumes;
  FakeFormat format{volumes};
  PlayedDriveJob driveJob;
  LocalDrives drives{routers, fakeServices(volumes, format), driveJob, person};
  PackageSets sets;
  RememberedParameters remembered;
  FakeRegistry registry;
  FakeMainView view;
  Workflow workflow{
      {installer, routers, drives, catalogue, sets, remembered, registry, statusBar, view, person}};
};

}  // namespace omniset::test
