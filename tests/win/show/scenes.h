// What can be performed.
#pragma once

#include "tests/win/show/stage.h"

namespace omniset::test {

// One installation as an operator does it, told step by step. The packages are in "packages".
void performDemo(Stage& stage);

// The window's main states, then its boxes and dialogs, a picture of each.
void showStates(Stage& stage);
void showDialogs(Stage& stage);
// Local drives and floppies.
void showDrives(Stage& stage);

}  // namespace omniset::test
