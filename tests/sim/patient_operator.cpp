#include "patient_operator.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace omniset::sim {

namespace {

constexpr int kMostAttempts = 12;
constexpr std::array<std::string_view, 3> kAllowedReasons{
    "Installation failed: No response from router, timeout",
    "Installation failed: bad router response",
    "Installation failed: Connection timeout",
};
constexpr std::array<std::string_view, 2> kFinishTexts{
    "Installation finished successfully",
    "No response, router must have been already rebooted",
};

template <std::size_t n>
bool isOneOf(const std::array<std::string_view, n>& texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

PatientOperator::PatientOperator(const Scenario& scenario, const PackageFolder& packages,
                                 RouterInstaller& installer, Inspect inspect)
    : scenario_(scenario),
      packages_(packages),
      installer_(installer),
      inspect_(std::move(inspect)) {
  for (const TargetPlan& plan : scenario.targets) rows_.emplace(plan.mac, Row{&plan});
}

bool PatientOperator::done() const {
  return std::all_of(rows_.begin(), rows_.end(),
                     [](const auto& entry) { return entry.second.phase == Phase::kDone; });
}

void PatientOperator::poll() {
  auto access = installer_.access();
  takeAnnouncements(access);
  for (auto& [mac, row] : rows_) follow(access, row);
}

void PatientOperator::takeAnnouncements(RouterInstaller::Access& access) {
  while (const auto announced = access.takeAnnouncement()) {
    const auto at = rows_.find(announced->mac);
    if (at == rows_.end() || at->second.phase != Phase::kWaiting) continue;
    Row& row = at->second;
    if (++row.attempts > kMostAttempts) {
      report(row.plan->mac, "not installed after many attempts");
      return;
    }
    RouterRecord record = row.plan->request;
    record.mac = announced->mac;
    record.label = announced->label;
    record.lastSeen = announced->lastSeen;
    access.install(record, packages_.path);
    row.phase = Phase::kInstalling;
  }
}

void PatientOperator::follow(RouterInstaller::Access& access, Row& row) {
  if (row.phase == Phase::kWaiting || row.phase == Phase::kDone) return;
  const RouterRecord* record = access.record(row.plan->mac);
  if (!record) {  // the target has started over
    row.phase = row.phase == Phase::kInstalled ? Phase::kDone : Phase::kWaiting;
    return;
  }
  switch (record->status) {
    case RouterStatus::kReady:
      report(row.plan->mac, "a session is ready");
      return;
    case RouterStatus::kInstalling:
      return;
    case RouterStatus::kFailed:
      failed(row, record->statusText);
      return;
    case RouterStatus::kWaitingReboot:
      if (row.phase == Phase::kInstalling) {
        verify(row, *record);
        if (scenario_.askForReboot) access.requestReboot(row.plan->mac);
      }
      if (!scenario_.askForReboot) row.phase = Phase::kDone;
      return;
    case RouterStatus::kFinished:
      if (row.phase == Phase::kInstalling) verify(row, *record);
      if (!isOneOf(kFinishTexts, record->statusText))
        report(row.plan->mac, "says " + record->statusText);
      row.phase = Phase::kDone;
      return;
  }
}

void PatientOperator::verify(Row& row, const RouterRecord& record) {
  row.phase = Phase::kInstalled;
  const std::string wrong = inspect_(*row.plan, record);
  if (!wrong.empty()) report(row.plan->mac, "wrong success: " + wrong);
}

void PatientOperator::failed(Row& row, const std::string& text) {
  if (scenario_.isPeaceful() || !isOneOf(kAllowedReasons, text))
    report(row.plan->mac, "fails with " + text);
  row.phase = Phase::kWaiting;
}

void PatientOperator::foundInstalled(const MacAddress& mac) {
  Row& row = rows_.at(mac);
  RouterRecord record = row.plan->request;
  record.mac = mac;
  verify(row, record);
  row.phase = Phase::kDone;
}

void PatientOperator::cancel(const MacAddress& mac) {
  Row& row = rows_.at(mac);
  if (row.phase != Phase::kInstalling) return;
  if (installer_.access().cancel(mac)) row.phase = Phase::kWaiting;
}

}  // namespace omniset::sim
