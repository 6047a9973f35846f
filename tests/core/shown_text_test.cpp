#include "core/shown_text.h"

#include <gtest/gtest.h>

namespace omniset::test {

TEST(ShownText, PlainTextAndOtherScriptsStay) {
  EXPECT_EQ(shownText("router 7 (lab)"), "router 7 (lab)");
  EXPECT_EQ(shownText("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"),
            "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(ShownText, ControlCharactersAreReplaced) {
  EXPECT_EQ(shownText("\x1b[2Jx\x07\t\x7f"), "?[2Jx???");
  EXPECT_EQ(shownText(std::string("a\0b", 3)), "a?b");
}

TEST(ShownText, ControlCharactersBeyondAsciiAreReplaced) {
  EXPECT_EQ(shownText("a\xC2\x9B"
                      "b"),
            "a??b");
  EXPECT_EQ(shownText("a\xC2\xA0"
                      "b"),
            "a\xC2\xA0"
            "b");
}

TEST(ShownText, BytesThatAreNotUtf8AreReplaced) {
  EXPECT_EQ(shownText("a\xFF"
                      "b"),
            "a?b");
  EXPECT_EQ(shownText("\x9B"), "?");
  EXPECT_EQ(shownText("a\xC3"), "a?");               // cut off
  EXPECT_EQ(shownText("\xE2\x82x"), "??x");          // cut off before another character
  EXPECT_EQ(shownText("\xC0\xAF"), "??");            // overlong
  EXPECT_EQ(shownText("\xE0\x80\xAF"), "???");       // overlong
  EXPECT_EQ(shownText("\xED\xA0\x80"), "???");       // surrogate
  EXPECT_EQ(shownText("\xF4\x90\x80\x80"), "????");  // beyond the last character
}

TEST(ShownText, LineBreaksBecomeBlanksButForTheLast) {
  EXPECT_EQ(shownText("bind() failed: Address in use\nError code: 98\r\n"),
            "bind() failed: Address in use Error code: 98");
}

TEST(EscapedText, KeepsLinesAndTabsAndShowsTheRest) {
  EXPECT_EQ(escapedText("Src:\tx\nData: \x1b[2J\x80\r\n"), "Src:\tx\nData: \\x1B[2J\\x80\\x0D\n");
  EXPECT_EQ(escapedText("caf\xC3\xA9"), "caf\xC3\xA9");
}

TEST(CutToColumns, CountsCharactersAndCutsNone) {
  EXPECT_EQ(cutToColumns("abc", 5), "abc");
  EXPECT_EQ(cutToColumns("abc", 2), "ab");
  EXPECT_EQ(cutToColumns("\xE2\x82\xAC\xE2\x82\xAC", 1), "\xE2\x82\xAC");
  EXPECT_EQ(cutToColumns("abc", 0), "");
}

TEST(Padded, FillsUpToColumns) {
  EXPECT_EQ(padded("a", 3), "a  ");
  EXPECT_EQ(padded("\xE2\x82\xAC", 3), "\xE2\x82\xAC  ");
  EXPECT_EQ(padded("abcd", 3), "abcd");
}

}  // namespace omniset::test
