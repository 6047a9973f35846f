// The text of what an action raises.
#pragma once

#include <exception>
#include <string>

namespace omniset::test {

// The text of the Exception (or of a class derived from it) that `action` raises; says so when it
// raises nothing. Anything else passes on.
template <class Exception, class Action>
std::string raisedText(Action action) {
  try {
    action();
  } catch (const Exception& e) {
    return e.what();
  }
  return "(nothing raised)";
}

}  // namespace omniset::test
