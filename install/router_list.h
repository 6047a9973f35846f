// The install targets that the operator sees: routers that announced themselves and local drives,
// each a row with its record. One thread uses a list.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/mac_address.h"
#include "install/router_record.h"
#include "install/router_rows.h"

namespace omniset {

class RouterList {
 public:
  // More than a segment has; it bounds what a flood of invented routers can use up.
  static constexpr std::size_t kMostRows = 4096;

  // Both are the owner's and outlive the list.
  RouterList(RouterRows& rows, const Clock& clock) : rows_(rows), clock_(clock) {}

  // For every announcement and every local drive. A ready row is only kept alive; any other is
  // replaced by a fresh one at the end, because a target announces itself only when it has started
  // over. The fresh row is selected if the old one was.
  void addOrRefresh(const RouterRecord& record);

  // Takes over the state of the target's session: status, bytes sent and status text. Nothing for a
  // target without a row.
  void updateStatus(const MacAddress& mac, const RouterRecord& session);

  // The target is free for another installation: its row is ready, seen just now.
  void release(const MacAddress& mac);

  // Removes the routers that are ready but have been silent for a minute.
  void age();

  void remove(const MacAddress& mac);

  // The record of the selected row, or null. Valid until the row goes; the owner may edit the
  // request in it.
  RouterRecord* selected();
  RouterRecord* find(const MacAddress& mac);

  // Calls for every record, in the order of the addresses; the calls must not add or remove rows.
  void forEach(const std::function<void(const RouterRecord&)>& call) const;

  std::size_t count() const { return order_.size(); }

 private:
  int rowOf(const MacAddress& mac) const;
  void append(const RouterRecord& record);
  void showStatus(const RouterRecord& record);

  RouterRows& rows_;
  const Clock& clock_;
  std::map<MacAddress, RouterRecord> records_;
  std::vector<MacAddress> order_;  // of the rows
};

}  // namespace omniset
