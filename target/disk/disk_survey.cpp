#include "target/disk/disk_survey.h"

namespace omniset {

DiskSurvey::DiskSurvey(TargetDisks& disks) : disks_(disks.find()) {
  for (const auto& disk : disks_) inspections_.push_back(std::make_unique<DiskInspection>(*disk));
}

bool DiskSurvey::step() {
  if (current_ < inspections_.size() && inspections_[current_]->step()) ++current_;
  return current_ == inspections_.size();
}

std::string DiskSurvey::text() const {
  if (inspections_.empty()) return "no disk";
  std::string text;
  for (const auto& inspection : inspections_) {
    text += (text.empty() ? "" : "; ") + inspection->text();
  }
  return text;
}

}  // namespace omniset
