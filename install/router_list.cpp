#include "install/router_list.h"

#include <algorithm>

#include "install/status_name.h"

namespace omniset {

namespace {

constexpr Micros kJustSeen = 10 * kMillisecond;
constexpr Micros kSilentTooLong = 60 * kSecond;

std::string mediaText(const RouterRecord& record) {
  if (record.kind != kLocalDrive) return record.mac.text();
  return driveTypeName(record.driveType);
}

int imageOf(const RouterRecord& record) {
  if (record.kind != kLocalDrive) return kRouterImage;
  return record.driveType == kFixedDrive ? kFixedDriveImage : kRemovableDriveImage;
}

}  // namespace

void RouterList::addOrRefresh(const RouterRecord& record) {
  bool wasSelected = false;
  if (RouterRecord* existing = find(record.mac)) {
    const Micros now = clock_.now();
    if (existing->status == RouterStatus::kReady) {
      existing->lastSeen = now;
      return;
    }
    if (existing->status == RouterStatus::kInstalling && now - existing->lastSeen < kJustSeen) {
      return;
    }
    wasSelected = rows_.selected() == rowOf(record.mac);
    remove(record.mac);
  }
  if (count() >= kMostRows) return;
  append(record);
  if (wasSelected) rows_.select(static_cast<int>(count()) - 1);
}

void RouterList::append(const RouterRecord& record) {
  records_[record.mac] = record;
  order_.push_back(record.mac);
  rows_.append({record.label, mediaText(record), statusName(record.status)}, imageOf(record));
}

void RouterList::updateStatus(const MacAddress& mac, const RouterRecord& session) {
  RouterRecord* record = find(mac);
  if (!record) return;
  const bool changed = record->status != session.status;
  record->status = session.status;
  record->bytesSent = session.bytesSent;
  record->statusText = session.statusText;
  if (changed) showStatus(*record);
}

void RouterList::release(const MacAddress& mac) {
  RouterRecord* record = find(mac);
  if (!record) return;
  updateStatus(mac, RouterRecord{});
  record->lastSeen = clock_.now();
}

void RouterList::age() {
  const Micros now = clock_.now();
  std::vector<MacAddress> silent;
  for (const auto& [mac, record] : records_) {
    if (record.kind != kLocalDrive && record.status == RouterStatus::kReady &&
        now - record.lastSeen > kSilentTooLong) {
      silent.push_back(mac);
    }
  }
  for (const MacAddress& mac : silent) remove(mac);
}

// The record goes last: whoever is told of the row's end still finds the right one.
void RouterList::remove(const MacAddress& mac) {
  const int row = rowOf(mac);
  if (row < 0) return;
  rows_.remove(row);
  order_.erase(order_.begin() + row);
  records_.erase(mac);
}

RouterRecord* RouterList::selected() {
  const int row = rows_.selected();
  if (row < 0 || static_cast<std::size_t>(row) >= order_.size()) return nullptr;
  return find(order_[static_cast<std::size_t>(row)]);
}

RouterRecord* RouterList::find(const MacAddress& mac) {
  const auto found = records_.find(mac);
  return found == records_.end() ? nullptr : &found->second;
}

void RouterList::forEach(const std::function<void(const RouterRecord&)>& call) const {
  for (const auto& [mac, record] : records_) call(record);
}

int RouterList::rowOf(const MacAddress& mac) const {
  const auto found = std::find(order_.begin(), order_.end(), mac);
  return found == order_.end() ? -1 : static_cast<int>(found - order_.begin());
}

void RouterList::showStatus(const RouterRecord& record) {
  rows_.setText(rowOf(record.mac), kStatusColumn, statusName(record.status));
}

}  // namespace omniset
