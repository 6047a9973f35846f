#include "target/disk/disk_inspection.h"

#include <exception>

#include "target/disk/size_text.h"

namespace omniset {

namespace {

constexpr int kSlicesPerStep = 4;

const char* suffix(Installation installation) {
  switch (installation) {
    case Installation::kNone:
      break;
    case Installation::kBrokenOff:
      return ", installation broke off";
    case Installation::kNotWhole:
      return ", installed, not whole any more";
    case Installation::kComplete:
      return ", installed";
  }
  return "";
}

}  // namespace

bool DiskInspection::step() {
  if (isDone_) return true;
  try {
    volume_ ? readSlices() : openVolume();
  } catch (const std::exception&) {
    end();
  }
  return isDone_;
}

void DiskInspection::openVolume() {
  const DiskLayout layout = readLayout(disk_);
  if (layout.isOurs) found_ = Installation::kBrokenOff;
  if (!layout.holdsFat) return end();
  volume_ = disk_.mount(TargetDisk::Place::kFirstPartition, TargetDisk::Access::kReadOnly);
  DiskContents contents = readContents(layout, *volume_);
  found_ = contents.installation;
  if (found_ != Installation::kComplete) return end();
  // Until all is read.
  found_ = Installation::kNotWhole;
  files_ = std::move(contents.files);
}

void DiskInspection::readSlices() {
  for (int slice = 0; slice < kSlicesPerStep; ++slice) {
    if (next_ == files_.size()) {
      found_ = Installation::kComplete;
      return end();
    }
    if (!check_) check_ = std::make_unique<FileCheck>(volume_->open(files_[next_].name));
    if (check_->step()) continue;
    const bool isWhole = check_->size() == files_[next_].size && check_->crc() == files_[next_].crc;
    check_.reset();
    ++next_;
    if (!isWhole) return end();
  }
}

void DiskInspection::end() {
  isDone_ = true;
  check_.reset();
  volume_.reset();
}

std::string DiskInspection::text() const {
  const std::string text = disk_.name() + " " + sizeText(disk_.sectorCount());
  return isDone_ ? text + suffix(found_) : text;
}

}  // namespace omniset
