// What every dialog template has to hold.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "ui/toolkit/dialog.h"

namespace omniset::test {

struct ExpectedControl {
  int id;
  std::string className;
  std::string text;
  LONG_PTR style;        // bits that are set,
  LONG_PTR without = 0;  // and bits that are not
};

// Each of these adds failures that name the control.
// The controls with a number are exactly these, and the labels exactly those.
void expectControls(const Dialog& dialog, const std::vector<ExpectedControl>& controls,
                    const std::vector<std::string>& labels);
// The window's inside, in dialog units, and the font of its texts.
void expectSizeAndFont(const Dialog& dialog, int width, int height);
// No button's or label's text is wider or higher than its place.
void expectNoTextClipped(const Dialog& dialog);
// All controls lie inside, above the lower edge less some dialog units, and none upon another
// (a group box may hold others).
void expectNothingOverlaps(const Dialog& dialog, int freeUnitsBelow);
// The controls that the Tab key visits, once around from the first.
std::vector<int> tabOrder(const Dialog& dialog);

}  // namespace omniset::test
