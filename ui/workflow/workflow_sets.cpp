// Package sets: applying, saving and deleting them.
#include "ui/registry.h"
#include "ui/workflow/workflow.h"

namespace omniset {

void Workflow::applyChosenSet() {
  const auto name = parts_.view.chosenSet();
  const auto* packages = name ? parts_.sets.find(*name) : nullptr;
  RouterRecord* entry = editableEntry();
  if (!packages || !entry) {
    display_.refresh();
    return;
  }
  storeFieldsShown();
  entry->packages = *packages;
  display_.load();
}

// The packages are those of the moment of the click: the entry may be gone when the name is given.
void Workflow::saveSet() {
  const RouterRecord* entry = parts_.routers.selected();
  if (!entry) return;
  const std::vector<std::string> packages = entry->packages;
  if (packages.empty()) {
    parts_.person.tell("Error", "Cannot create empty package set", Operator::Icon::kNone);
    return;
  }
  const auto name = newSetName();
  if (!name) return;
  parts_.sets.add(*name, packages);
  parts_.view.addSet(*name);
  parts_.view.chooseSet(*name);
  display_.refresh();
}

// Asks until the name can be taken. Nothing when the operator cancels.
std::optional<std::string> Workflow::newSetName() {
  for (;;) {
    const auto name = parts_.person.nameSet("Router x");
    if (!name) return std::nullopt;
    if (name->empty()) {
      parts_.person.tell("Error", "A package set needs a name", Operator::Icon::kNone);
    } else if (parts_.sets.find(*name)) {
      parts_.person.tell("Error", "Package set with this name already exists",
                         Operator::Icon::kNone);
    } else {
      return name;
    }
  }
}

// At once in the store, too: a deleted set is gone even if the program ends abnormally.
void Workflow::deleteSet() {
  const auto name = parts_.view.chosenSet();
  if (!name || !parts_.sets.find(*name)) return;
  parts_.view.chooseNoSet();
  parts_.view.removeSet(*name);
  display_.refresh();
  Registry(parts_.registry, kPackageSetsKey).deleteValue(*name);
  parts_.sets.erase(*name);
}

}  // namespace omniset
