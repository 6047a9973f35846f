#include "tests/win/driver/host_channel.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/win/driver/waiting.h"

namespace omniset::test {

namespace {

constexpr Milliseconds kAnswerLimit{60'000};

std::string joined(const std::vector<std::string>& words, char separator) {
  std::string text;
  for (const std::string& word : words) text += word + separator;
  return text;
}

}  // namespace

// Both sides write under another name first, so that the other never sees half a file.
std::string HostChannel::request(const std::vector<std::string>& words) {
  const std::string number = std::to_string(++number_);
  const std::string part = folder_ + "\\part";
  const std::string answer = folder_ + "\\answer-" + number;
  std::ofstream(part, std::ios::binary) << joined(words, '\n');
  std::filesystem::rename(part, folder_ + "\\request-" + number);
  const std::string what = "\"" + joined(words, ' ') + "\" outside Windows";
  waitUntil(
      what, [&] { return std::filesystem::exists(answer); }, {}, kAnswerLimit);
  std::ifstream file(answer, std::ios::binary);
  std::string status;
  std::getline(file, status);
  std::string output(std::istreambuf_iterator<char>(file), {});
  if (status != "0") throw WindowFault(what + " failed: " + output);
  return output;
}

}  // namespace omniset::test
