#include "cli/json_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace omniset::test {

namespace {
const MacAddress kMac{{2, 0, 0, 0, 1, 10}};
}

TEST(JsonEvents, RouterHasMacAndLabel) {
  std::ostringstream out;
  JsonEvents(out).routerSeen(kMac, "lab \"7\"");
  EXPECT_EQ(out.str(),
            "{\"event\":\"router\",\"mac\":\"02:00:00:00:01:0A\",\"label\":\"lab \\\"7\\\"\"}\n");
}

TEST(JsonEvents, LabelIsWholeButMovesNoTerminal) {
  std::ostringstream out;
  JsonEvents(out).routerSeen(kMac, "a\x1B[2J\xC2\x9B\x7F\xFF");
  EXPECT_EQ(nlohmann::json::parse(out.str())["label"], "a\x1B[2J\xC2\x9B\x7F\xEF\xBF\xBD");
  const std::string line = out.str();
  EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) {
    return c == '\n' || (c >= ' ' && c <= '~');
  })) << line;
}

TEST(JsonEvents, StatusHasCodeTextAndBytes) {
  std::ostringstream out;
  JsonEvents(out).statusChanged(
      {kMac, "lab", RouterStatus::kInstalling, "Transfering: a.bdl", 1452, 20000});
  EXPECT_EQ(out.str(),
            "{\"event\":\"status\",\"mac\":\"02:00:00:00:01:0A\",\"code\":4,"
            "\"status\":\"Installing\",\"text\":\"Transfering: a.bdl\",\"bytes\":1452,"
            "\"total\":20000}\n");
}

TEST(JsonEvents, EachCodeHasItsFixedText) {
  const std::vector<std::pair<int, std::string>> expected = {
      {1, "Ready"}, {2, "OK"}, {3, "Failed"}, {4, "Installing"}, {5, "Waiting reboot"}};
  for (const auto& [code, name] : expected) {
    std::ostringstream out;
    RouterState state;
    state.status = static_cast<RouterStatus>(code);
    JsonEvents(out).statusChanged(state);
    const auto event = nlohmann::json::parse(out.str());
    EXPECT_EQ(event["code"], code);
    EXPECT_EQ(event["status"], name);
  }
}

TEST(JsonEvents, ResultSaysWhetherAndWhy) {
  std::ostringstream out;
  JsonEvents events(out);
  events.routerDone(kMac, true, "Installation finished successfully");
  events.routerDone(kMac, false, "interrupted");
  EXPECT_EQ(out.str(),
            "{\"event\":\"result\",\"mac\":\"02:00:00:00:01:0A\",\"ok\":true,"
            "\"text\":\"Installation finished successfully\"}\n"
            "{\"event\":\"result\",\"mac\":\"02:00:00:00:01:0A\",\"ok\":false,"
            "\"text\":\"interrupted\"}\n");
}

TEST(JsonEvents, EventsAreOneLineEachWhateverTheLabelHolds) {
  std::string everyByte;
  for (int byte = 1; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  std::ostringstream out;
  JsonEvents events(out);
  events.routerSeen(kMac, everyByte);
  events.routerDone(kMac, false, everyByte);
  std::istringstream lines(out.str());
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    const auto event = nlohmann::json::parse(line);
    for (const char c : line) EXPECT_GE(static_cast<unsigned char>(c), 0x20);
    EXPECT_EQ(event["mac"], "02:00:00:00:01:0A");
  }
  EXPECT_EQ(count, 2);
}

TEST(RouterJson, HasMacAndLabel) {
  EXPECT_EQ(routerJson(kMac, "a\x1b"), "{\"mac\":\"02:00:00:00:01:0A\",\"label\":\"a\\u001b\"}\n");
}

TEST(PackageJson, HasEverythingThatIsKnownOfThePackage) {
  PackageRecord package;
  package.name = "routing";
  package.version = 0x02096607;
  package.fileName = "routing-2.9.7.bdl";
  package.size = 1234;
  package.description = "Routing\xFF";
  package.dependencies = {{"system", 0x02080000 + 'f' * 256, 0xFFFFFFFF}};
  package.missing = {"system"};
  const auto object = nlohmann::json::parse(packageJson(package));
  EXPECT_EQ(object["name"], "routing");
  EXPECT_EQ(object["version"], "2.9.7");
  EXPECT_EQ(object["file"], "routing-2.9.7.bdl");
  EXPECT_EQ(object["size"], 1234);
  EXPECT_EQ(object["description"], "Routing\xEF\xBF\xBD");
  EXPECT_EQ(object["dependencies"],
            nlohmann::json::parse(R"([{"name":"system","min":"2.8","max":"any"}])"));
  EXPECT_EQ(object["missing"], nlohmann::json::parse(R"(["system"])"));
}

TEST(PackageJson, EmptyListsAreLists) {
  const auto object = nlohmann::json::parse(packageJson({}));
  EXPECT_TRUE(object["dependencies"].is_array());
  EXPECT_TRUE(object["missing"].is_array());
}

}  // namespace omniset::test
