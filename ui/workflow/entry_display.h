// Keeps the window's controls in step with the selected entry of the router list.
#pragma once

#include <optional>
#include <string>

#include "core/mac_address.h"
#include "install/router_list.h"
#include "packages/package_catalogue.h"
#include "ui/workflow/main_view.h"
#include "ui/workflow/package_sets.h"
#include "ui/workflow/request_defaults.h"

namespace omniset {

class EntryDisplay {
 public:
  // What is referred to is the owner's and outlives the display.
  EntryDisplay(RouterList& routers, PackageCatalogue& catalogue, const PackageSets& sets,
               const RequestDefaults& defaults, MainView& view)
      : routers_(routers), catalogue_(catalogue), sets_(sets), defaults_(defaults), view_(view) {}

  // Shows all of the selected entry; without one, what a new target would start with.
  void load();
  // Shows the marks anew, because the entry's choice or the catalogue changed.
  void loadMarks();
  // Shows what changes by itself, and all of the entry if it is another than before. Touches only
  // controls that change. Called on every tick of the window's timer.
  void refresh();

  // The parameter fields hold what was typed for this entry.
  bool shows(const MacAddress& mac) const { return shown_ == mac; }

 private:
  bool showsSelected() const;
  RouterRecord presentRecord() const;
  void showMarks(const RouterRecord& record);
  SetChoice setChoice(const RouterRecord* entry) const;
  void showState(const RouterRecord* entry);

  RouterList& routers_;
  PackageCatalogue& catalogue_;
  const PackageSets& sets_;
  const RequestDefaults& defaults_;
  MainView& view_;

  std::optional<MacAddress> shown_;
  PackageMarks marks_;
  // As the view has them; nothing before they were shown first.
  std::optional<std::string> title_;
  std::optional<std::string> statusLine_;
  std::optional<int> progress_;
  std::optional<ControlStates> controls_;
};

}  // namespace omniset
