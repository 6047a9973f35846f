// Requests to the script that started this program outside Windows (tests/win/driver/host.sh):
// what only that side can do, such as playing a router in another network or taking a picture.
//
// A request is a file of one word to a line; the answer is a file whose first line is an exit
// status. Requests are numbered, and each is answered before the next is made.
#pragma once

#include <string>
#include <vector>

namespace omniset::test {

class HostChannel {
 public:
  // `folder` is the one that the script watches.
  explicit HostChannel(std::string folder) : folder_(std::move(folder)) {}

  // Makes the request and returns what it printed; raises WindowFault when it fails.
  std::string request(const std::vector<std::string>& words);

 private:
  std::string folder_;
  int number_ = 0;
};

}  // namespace omniset::test
