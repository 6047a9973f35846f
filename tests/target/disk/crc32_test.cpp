#include "target/disk/crc32.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace omniset::test {
namespace {

std::uint32_t crcOf(std::string_view text) {
  Crc32 crc;
  crc.add({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  return crc.value();
}

TEST(Crc32, IsThatOfEthernet) {
  EXPECT_EQ(crcOf("123456789"), 0xCBF43926u);
  EXPECT_EQ(crcOf("The quick brown fox jumps over the lazy dog"), 0x414FA339u);
}

TEST(Crc32, NothingHasZero) {
  EXPECT_EQ(Crc32().value(), 0u);
  EXPECT_EQ(crcOf(""), 0u);
}

TEST(Crc32, OneBlockAndItsPiecesAgree) {
  const std::string text(1000, 'x');
  for (const std::size_t cut : {0, 1, 500, 999, 1000}) {
    Crc32 crc;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    crc.add({bytes, cut});
    crc.add({bytes + cut, text.size() - cut});
    EXPECT_EQ(crc.value(), crcOf(text)) << cut;
  }
}

TEST(Crc32, TheValueMayBeReadInBetween) {
  Crc32 crc;
  const std::uint8_t byte = '1';
  crc.add({&byte, 1});
  EXPECT_EQ(crc.value(), crcOf("1"));
  crc.add({&byte, 1});
  EXPECT_EQ(crc.value(), crcOf("11"));
}

}  // namespace
}  // namespace omniset::test
