#include "ui/workflow/entry_display.h"

#include "core/format_text.h"

namespace omniset {

void EntryDisplay::load() {
  const RouterRecord* entry = routers_.selected();
  shown_ = entry ? std::optional(entry->mac) : std::nullopt;
  const RouterRecord record = presentRecord();
  view_.showFields(fieldsOf(record));
  showMarks(record);
}

void EntryDisplay::loadMarks() {
  if (showsSelected()) {
    showMarks(presentRecord());
  } else {
    load();
  }
}

void EntryDisplay::refresh() {
  if (showsSelected()) {
    showState(routers_.selected());
  } else {
    load();
  }
}

bool EntryDisplay::showsSelected() const {
  const RouterRecord* entry = routers_.selected();
  return entry ? shown_ == entry->mac : !shown_;
}

void EntryDisplay::showMarks(const RouterRecord& record) {
  marks_ = marksOf(catalogue_, record.packages);
  view_.showMarks(marks_);
  showState(routers_.selected());
}

RouterRecord EntryDisplay::presentRecord() const {
  if (const RouterRecord* entry = routers_.selected()) return *entry;
  RouterRecord fresh;
  defaults_.fill(fresh);
  return fresh;
}

SetChoice EntryDisplay::setChoice(const RouterRecord* entry) const {
  const auto name = view_.chosenSet();
  const auto* packages = name ? sets_.find(*name) : nullptr;
  return {packages != nullptr, packages && entry && entry->packages == *packages};
}

void EntryDisplay::showState(const RouterRecord* entry) {
  const auto update = [](auto& shown, const auto& value, auto&& show) {
    if (shown == value) return;
    shown = value;
    show();
  };
  const std::string title =
      entry ? formatText("Selected %d package(s)", countOf(marks_)) : std::string("Packages");
  update(title_, title, [&] { view_.showPackagesTitle(title); });
  const std::string statusLine = entry ? entry->statusText : std::string();
  update(statusLine_, statusLine, [&] { view_.showStatusLine(statusLine); });
  const int progress = entry ? progressOf(*entry) : 0;
  update(progress_, progress, [&] { view_.showProgress(progress); });
  const ControlStates controls = controlStates(entry, setChoice(entry));
  update(controls_, controls, [&] { view_.showControls(controls); });
}

}  // namespace omniset
