// What a performance of the window needs: the program, the folder for its files, and the script
// outside Windows that plays the routers, takes the pictures and prints what is said.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/win/driver/drive_letters.h"
#include "tests/win/driver/host_channel.h"
#include "tests/win/driver/window_under_test.h"

namespace omniset::test {

class Stage {
 public:
  // Raises WindowFault unless the environment names the folder and the program.
  Stage();

  std::string path(const std::string& name) const { return folder_ + "\\" + name; }
  const std::string& program() const { return program_; }

  // Starts the program in place of one that runs.
  WindowUnderTest& open();
  WindowUnderTest& window() { return *window_; }
  // Ends it as an operator does.
  void close();

  // More arguments of omniset-target may follow.
  void startTarget(const std::string& name, std::vector<std::string> arguments);
  void freezeTarget(const std::string& name) { host_.request({"freeze", name}); }
  void thawTarget(const std::string& name) { host_.request({"thaw", name}); }
  void stopTargets() { host_.request({"stop-all"}); }
  void waitForTarget(const std::string& name) { host_.request({"wait", name, "30"}); }

  // A drive with a medium of so many megabytes; 0 for a floppy.
  void attachDrive(char letter, UINT type, int megabytes);

  // A virtual PC, by the name of its files; more settings of vm_start in scripts/lib/vm.sh may
  // follow.
  void startPc(const std::string& name, std::vector<std::string> settings);
  void awaitReboot(const std::string& name) { host_.request({"await-reboot", name}); }
  void pictureOfPc(const std::string& name, const std::string& picture) {
    host_.request({"picture-of-pc", name, picture});
  }

  // Returns the label of the first router in the list, as soon as there is one.
  std::string awaitRouter();
  void selectRouter(const std::string& label);
  void awaitStatus(const std::string& label, const std::string& status);
  // The button that is "Install" or "Reboot".
  void pressInstall(const std::string& as);

  void say(const std::string& text) { host_.request({"say", text}); }
  // When everything that was asked for is on the screen.
  void picture(const std::string& name);

 private:
  std::string folder_;
  std::string program_;
  HostChannel host_;
  std::unique_ptr<WindowUnderTest> window_;
  int starts_ = 0;
};

}  // namespace omniset::test
