#include "core/file_name.h"

#include <gtest/gtest.h>

#include <string>

namespace omniset::test {
namespace {

TEST(FileName, PackagesAreTaken) {
  for (const char* name : {"system-2.9.7.bdl", "a b (x86).bdl", "autorun.scr", "r\xE9seau.bdl", "x",
                           " x", "a~b", "a~", "console.bdl", "com.bdl", "com10.bdl", "null"}) {
    EXPECT_TRUE(isSafeFileName(name)) << name;
    EXPECT_TRUE(isFatFileName(name)) << name;
  }
}

TEST(FileName, PathsAndHiddenNamesAreNotSafe) {
  for (const char* name : {"", ".", "..", "../x", "a/b", "a\\b", "C:x", ".hidden"}) {
    EXPECT_FALSE(isSafeFileName(name)) << name;
    EXPECT_FALSE(isFatFileName(name)) << name;
  }
}

TEST(FileName, ControlCharactersAreNotSafe) {
  for (const std::string& name :
       {std::string("a\nb"), std::string("a\x7F"), std::string("a\0b", 3)}) {
    EXPECT_FALSE(isSafeFileName(name)) << name;
  }
}

TEST(FileName, LengthIsBounded) {
  EXPECT_TRUE(isFatFileName(std::string(200, 'n')));
  EXPECT_FALSE(isFatFileName(std::string(201, 'n')));
}

TEST(FileName, FatRefusesWhatItCannotHold) {
  for (const char* name : {"a<b", "a>b", "a\"b", "a|b", "a?b", "a*b", "a.", "a ", "a..", " "}) {
    EXPECT_TRUE(isSafeFileName(name)) << name;
    EXPECT_FALSE(isFatFileName(name)) << name;
  }
}

TEST(FileName, FatRefusesDevices) {
  for (const char* name : {"con", "CON.bdl", "nul", "Aux.a.b", "prn", "com1", "LPT9.bdl"}) {
    EXPECT_FALSE(isFatFileName(name)) << name;
  }
}

TEST(FileName, FatRefusesTheFormOfItsOwnShortNames) {
  for (const char* name : {"SYSTEM~1.BDL", "a~1", "~9", "long name~12.bdl"}) {
    EXPECT_FALSE(isFatFileName(name)) << name;
  }
}

TEST(FileName, TakesAnEntryForEach13LettersBesideItsOwn) {
  EXPECT_EQ(fatEntriesOf("linux"), 2u);
  EXPECT_EQ(fatEntriesOf("system-29.bdl"), 2u);
  EXPECT_EQ(fatEntriesOf("system-2.9.bdl"), 3u);
}

TEST(FileName, CaseDoesNotTellNamesApart) {
  EXPECT_TRUE(isSameFileName("System.BDL", "sYSTEM.bdl"));
  EXPECT_TRUE(isSameFileName("R\xC9SEAU", "r\xE9seau"));
  EXPECT_FALSE(isSameFileName("system.bdl", "system.bdlx"));
  EXPECT_FALSE(isSameFileName("a[", "a{"));
  EXPECT_FALSE(isSameFileName("a\xD7", "a\xF7"));
  EXPECT_EQ(foldedFileName("System.BDL"), "system.bdl");
}

}  // namespace
}  // namespace omniset::test
