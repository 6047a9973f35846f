#include <windows.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

#include "core/error.h"
#include "core/sync.h"
#include "tests/contract/raised_text.h"

namespace omniset::test {
namespace {

std::string nameOfThisProcess() {
  return "OmnisetContract" + std::to_string(GetCurrentProcessId());
}

TEST(NamedMutex, OfOneNameIsOneMutex) {
  Mutex first(nameOfThisProcess());
  first.wait();
  std::thread([] {
    Mutex second(nameOfThisProcess());
    EXPECT_EQ(raisedText<std::runtime_error>([&] { second.wait(0); }), "Mutex wait timeouted");
  }).join();
  first.release();
}

TEST(NamedMutex, NameTakenByAnotherKindOfObjectRaises) {
  const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nameOfThisProcess().c_str());
  const std::string text = raisedText<Error>([] { const Mutex mutex(nameOfThisProcess()); });
  CloseHandle(event);
  EXPECT_TRUE(text.starts_with("Mutex CreateMutex: ")) << text;
  EXPECT_TRUE(text.ends_with("Error code: " + std::to_string(ERROR_INVALID_HANDLE))) << text;
}

// A thread that was terminated while it owned the mutex must not lock out the others.
TEST(Win32Mutex, LeftByAThreadThatEndedIsObtained) {
  Mutex mutex;
  std::thread([&] { mutex.wait(); }).join();
  EXPECT_NO_THROW(mutex.wait(0));
  mutex.release();
}

}  // namespace
}  // namespace omniset::test
