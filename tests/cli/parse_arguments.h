// Parsing as the tests want it: what was understood, or what is printed instead.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace omniset::test {

inline std::vector<std::string> words(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), {}};
}

// What the command line makes of its arguments, which are separated by blanks.
template <class Options>
Options understood(const std::string& line) {
  const auto parsed = parseArguments(words(line));
  if (const auto* end = std::get_if<EarlyEnd>(&parsed)) {
    ADD_FAILURE() << end->text;
    return {};
  }
  return std::get<Options>(std::get<Arguments>(parsed).command);
}

inline EarlyEnd ended(const std::string& line) {
  const auto parsed = parseArguments(words(line));
  if (const auto* end = std::get_if<EarlyEnd>(&parsed)) return *end;
  ADD_FAILURE() << "understood: " << line;
  return {};
}

// The sentence with which bad arguments are refused.
inline std::string complaintAbout(const std::string& line) {
  const EarlyEnd end = ended(line);
  EXPECT_EQ(end.exitCode, kExitBadInput) << line;
  return end.text;
}

inline void expectComplaint(const std::string& line, const std::string& part) {
  const std::string text = complaintAbout(line);
  EXPECT_NE(text.find(part), std::string::npos) << line << "\n" << text;
}

}  // namespace omniset::test
