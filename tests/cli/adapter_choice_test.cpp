#include "cli/adapter_choice.h"

#include <gtest/gtest.h>

#include "cli/bad_input.h"

namespace omniset::test {

namespace {

const std::vector<NetworkInterface> kNamed = {{"eth0", {{2, 0, 0, 0, 0, 1}}},
                                              {"eth1", {{2, 0, 0, 0, 0, 2}}}};
const std::vector<NetworkInterface> kNumbered = {{"", {{2, 0, 0, 0, 0, 1}}},
                                                 {"", {{2, 0, 0, 0, 0, 0xB}}}};

std::string refusalOf(const std::vector<NetworkInterface>& adapters, const std::string& wanted) {
  try {
    chooseAdapter(adapters, wanted);
  } catch (const BadInput& e) {
    return e.what();
  }
  return "taken";
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(AdapterChoice, OnlyAdapterIsTakenWithoutAWord) {
  const AdapterChoice choice = chooseAdapter({kNamed[0]}, "");
  EXPECT_EQ(choice.adapter.name, "eth0");
  EXPECT_FALSE(choice.isGuess);
}

TEST(AdapterChoice, FirstOfSeveralIsAGuessThatIsTold) {
  const AdapterChoice choice = chooseAdapter(kNamed, "");
  EXPECT_EQ(choice.adapter.name, "eth0");
  ASSERT_TRUE(choice.isGuess);
  EXPECT_EQ(guessWarning(choice),
            "Using the adapter eth0, the first of several; choose another one with --interface.");
}

TEST(AdapterChoice, NameIsTakenExactly) {
  const AdapterChoice choice = chooseAdapter(kNamed, "eth1");
  EXPECT_EQ(choice.adapter.mac, kNamed[1].mac);
  EXPECT_EQ(choice.shownName, "eth1");
  EXPECT_FALSE(choice.isGuess);
}

TEST(AdapterChoice, UnknownNameIsRefusedWithTheNamesThatAreThere) {
  const std::string text = refusalOf(kNamed, "eth7");
  EXPECT_TRUE(contains(text, "no Ethernet adapter 'eth7' that is up"));
  EXPECT_TRUE(contains(text, "eth0, eth1."));
  EXPECT_NE(refusalOf(kNamed, "1"), "taken");
}

TEST(AdapterChoice, AdaptersWithoutNamesGoByNumberOrMacAddress) {
  EXPECT_EQ(chooseAdapter(kNumbered, "1").adapter.mac, kNumbered[1].mac);
  EXPECT_EQ(chooseAdapter(kNumbered, "02-00-00-00-00-0b").adapter.mac, kNumbered[1].mac);
  EXPECT_EQ(chooseAdapter(kNumbered, "").shownName, "02:00:00:00:00:01");
  EXPECT_TRUE(contains(refusalOf(kNumbered, "2"), "0 (02:00:00:00:00:01), 1 (02:00:00:00:00:0B)."));
}

TEST(AdapterChoice, ComputerWithoutAnAdapterIsNoFaultOfTheArguments) {
  try {
    chooseAdapter({}, "eth0");
    FAIL();
  } catch (const BadInput&) {
    FAIL();
  } catch (const Failure& e) {
    EXPECT_TRUE(contains(e.what(), "no Ethernet adapter that is up: plug in the cable"));
  }
}

TEST(SocketFailureText, SaysWhatToDoAndKeepsTheReasonOnOneLine) {
  EXPECT_EQ(socketFailureText("bind() failed: Address already in use\nError code: 98", "eth0"),
            "UDP port 5000 cannot be had: another installer is probably running on this computer. "
            "End it and start again. (bind() failed: Address already in use Error code: 98)");
  const std::string tied =
      socketFailureText("setsockopt() SO_BINDTODEVICE failed: No\nError code: 1", "eth0");
  EXPECT_TRUE(contains(tied, "The adapter eth0 cannot be used"));
  EXPECT_TRUE(contains(tied, "as root"));
  EXPECT_TRUE(contains(socketFailureText("recvfrom() failed: Network is down\n", "eth0"),
                       "check that the adapter eth0 is up"));
}

}  // namespace omniset::test
