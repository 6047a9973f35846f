// Performs with the real window: "demo" tells one installation, "states", "dialogs" and "drives"
// take pictures. Started by scripts/demo and scripts/screenshots, which do what is asked for
// outside Windows.
#include <cstdio>
#include <exception>
#include <string>

#include "tests/win/show/scenes.h"

int main(int argc, char** argv) {
  using namespace omniset::test;
  const std::string scene = argc == 2 ? argv[1] : "";
  try {
    Stage stage;
    if (scene == "demo") {
      performDemo(stage);
    } else if (scene == "states") {
      showStates(stage);
    } else if (scene == "dialogs") {
      showDialogs(stage);
    } else if (scene == "drives") {
      showDrives(stage);
    } else {
      std::puts("Usage: show_window demo|states|dialogs|drives");
      return 2;
    }
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return 1;
  }
  return 0;
}
