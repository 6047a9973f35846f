#include "core/error.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

#include "core/os_error.h"

namespace omniset::test {
namespace {

// No system knows it.
constexpr long kUnknownCode = 0x2FFFFFF;

template <class E>
E after(long code, const char* callText) {
  setLastOsError(code);
  return E(callText);
}

TEST(Error, IsCallTextColonSystemTextAndCode) {
  const Error error = after<Error>(2, "CreateMutex() failed");
  EXPECT_EQ(error.what(), "CreateMutex() failed: " + osErrorText(2) + "Error code: 2");
}

TEST(Error, PutsTheCodeOnALineOfItsOwn) {
  const std::string text = after<Error>(5, "Event SetEvent").what();
  EXPECT_NE(text.find("\nError code: 5"), std::string::npos) << text;
}

TEST(Error, AfterACallThatLeftNoErrorGivesTheTextOfCodeZero) {
  const Error error = after<Error>(0, "Mutex CreateMutex");
  EXPECT_FALSE(osErrorText(0).empty());
  EXPECT_EQ(error.what(), "Mutex CreateMutex: " + osErrorText(0) + "Error code: 0");
}

TEST(Error, OfAnUnknownCodeHasTheCodeRightAfterTheColon) {
  EXPECT_STREQ(after<Error>(kUnknownCode, "GetTempPath").what(),
               "GetTempPath: Error code: 50331647");
}

TEST(Error, KeepsPercentSignsOfTheCallText) {
  EXPECT_STREQ(after<Error>(kUnknownCode, "open 100%s").what(), "open 100%s: Error code: 50331647");
}

TEST(Error, KeepsItsMessageWhenTheLastErrorChanges) {
  const Error error = after<Error>(2, "CreateThread");
  const std::string message = error.what();
  setLastOsError(5);
  EXPECT_EQ(error.what(), message);
}

TEST(Error, LastErrorIsTheThreadsPresentOne) {
  const Error error = after<Error>(2, "CreateThread");
  setLastOsError(5);
  EXPECT_EQ(error.lastError(), 5);
}

TEST(Error, OutlivesTheTextItWasMadeFrom) {
  std::string callText = "Event ResetEvent, a text too long for the string's own room";
  const Error error = after<Error>(kUnknownCode, callText.c_str());
  callText.assign(callText.size(), 'x');
  EXPECT_TRUE(std::string(error.what()).starts_with("Event ResetEvent"));
}

TEST(SocketExc, IsComposedLikeError) {
  const SocketExc error = after<SocketExc>(2, "bind() failed");
  EXPECT_STREQ(error.what(), after<Error>(2, "bind() failed").what());
}

TEST(SocketExc, LastErrorIsThePresentSocketError) {
  const SocketExc error = after<SocketExc>(2, "bind() failed");
  setLastOsError(5);
  EXPECT_EQ(error.lastError(), lastSocketError());
}

TEST(SocketExc, IsCaughtAsError) {
  EXPECT_THROW(throw after<SocketExc>(2, "bind() failed"), Error);
}

TEST(BadFile, GivesTheSameLiteralOnEveryCall) {
  static constexpr const char* kLiteral = "bad magic";
  const BadFile error(kLiteral);
  EXPECT_EQ(error.what(), kLiteral);
  EXPECT_EQ(error.what(), kLiteral);
}

TEST(BadFile, ACopyPointsToTheSameLiteral) {
  const BadFile error("bad magic");
  const BadFile copy(error);
  EXPECT_EQ(copy.what(), error.what());
  try {
    throw error;
  } catch (const BadFile& caught) {
    EXPECT_EQ(caught.what(), error.what());
  }
}

TEST(Failure, IsItsSentenceAndNothingElse) {
  setLastOsError(5);
  EXPECT_STREQ(Failure("Read from device failed").what(), "Read from device failed");
}

TEST(Failure, OwnsItsSentence) {
  std::string sentence = "Cannot open device, in a sentence that needs room of its own";
  const Failure failure(sentence);
  sentence.assign(sentence.size(), 'x');
  EXPECT_STREQ(failure.what(), "Cannot open device, in a sentence that needs room of its own");
}

TEST(Exceptions, AreAllStandardExceptions) {
  EXPECT_TRUE((std::is_base_of_v<std::exception, Error>));
  EXPECT_TRUE((std::is_base_of_v<Error, SocketExc>));
  EXPECT_TRUE((std::is_base_of_v<std::exception, BadFile>));
  EXPECT_TRUE((std::is_base_of_v<std::exception, Failure>));
}

// Whoever recovers from a bad package must not swallow a failed system call, and the other way.
TEST(Exceptions, OfDifferentKindsAreNotCaughtAsOneAnother) {
  EXPECT_FALSE((std::is_base_of_v<Error, BadFile>));
  EXPECT_FALSE((std::is_base_of_v<Error, Failure>));
  EXPECT_FALSE((std::is_base_of_v<std::runtime_error, Error>));
}

}  // namespace
}  // namespace omniset::test
