// Files by TFTP over wires that lose, repeat, delay and bring what nobody awaits.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <random>

#include "tftp_file_fixture.h"

namespace omniset::loader::test {
namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;

// What comes before a block.
struct Stray {
  const char* what;
  bool isFromElsewhere;
  std::uint16_t opcode;
  int number;  // from that of the block on
  std::size_t length;

  Datagram before(const Datagram& block) const {
    Datagram stray = block;
    if (isFromElsewhere) stray.from = kStrangePort;
    stray.bytes = packet(opcode, static_cast<std::uint16_t>(numberOf(block) + number), 1500);
    stray.bytes.resize(length);
    return stray;
  }
};

constexpr Stray kStrays[] = {
    {"a block from another port", true, kData, 0, 516},
    {"a last one from another port", true, kData, 0, 7},
    {"the block before, from another port", true, kData, -1, 516},
    {"an error from another port", true, kError, 0, 9},
    {"the block after it", false, kData, 1, 516},
    {"the block before that before it", false, kData, -2, 516},
    {"a block with a byte too many", false, kData, 0, 517},
    {"a block with far too many bytes", false, kData, 0, 1472},
    {"a request", false, kRequest, 0, 516},
    {"a write request", false, 2, 0, 516},
    {"an acknowledgement", false, kAcknowledgement, 0, 516},
    {"an acknowledgement of options", false, 6, 0, 516},
    {"an opcode of two bytes", false, 0x103, 0, 516},
    {"nothing", false, kData, 0, 0},
    {"a byte", false, kData, 0, 1},
    {"an opcode", false, kData, 0, 2},
    {"half a head", false, kData, 0, 3},
    {"half an error", false, kError, 0, 3},
};

TEST_F(TftpFile, WhatIsNotItsNextBlockIsPassedOver) {
  const Bytes expected = content(10'000);
  for (const Stray& stray : kStrays) {
    pc.server.wire = [&](const Datagram& datagram) {
      if (isFromPc(datagram)) return Arrivals{{0, datagram}};
      // Its port is known by its first block.
      if (stray.isFromElsewhere && numberOf(datagram) == 1) return Arrivals{{0, datagram}};
      return Arrivals{{0, stray.before(datagram)}, {0, datagram}};
    };
    EXPECT_TRUE(fetchOnly(expected) == expected) << stray.what;
    EXPECT_EQ(pc.server.sentByPc.size(), 21u) << stray.what;
  }
}

TEST_F(TftpFile, WhatComesFromNoPortIsPassedOver) {
  const Bytes expected = content(1000);
  pc.server.wire = [](const Datagram& datagram) {
    if (isFromPc(datagram)) return Arrivals{{0, datagram}};
    Datagram stray = datagram;
    stray.from = 0;
    stray.bytes.back() ^= 0xFF;
    return Arrivals{{0, stray}, {0, datagram}};
  };
  EXPECT_TRUE(fetchOnly(expected) == expected);
}

TEST_F(TftpFile, NothingIsAcknowledgedBeforeTheFirstBlock) {
  pc.server.wire = [](const Datagram& datagram) {
    Arrivals arrivals{{0, datagram}};
    if (numberOf(datagram) == 1 && !isFromPc(datagram)) {
      arrivals = {{0, {datagram.from, datagram.to, packet(kData, 0, 512)}}, {0, datagram}};
    }
    return arrivals;
  };
  EXPECT_EQ(fetchOnly(content(700)), content(700));
  EXPECT_THAT(acknowledged(), ElementsAre(1, 2));
}

TEST_F(TftpFile, ABlockThatComesTwiceIsAcknowledgedTwiceAndTakenOnce) {
  pc.server.wire = [](const Datagram& datagram) {
    Arrivals arrivals{{0, datagram}};
    if (numberOf(datagram) == 2 && !isFromPc(datagram)) arrivals.push_back({0, datagram});
    return arrivals;
  };
  EXPECT_EQ(fetchOnly(content(1500)), content(1500));
  EXPECT_THAT(acknowledged(), ElementsAre(1, 2, 2, 3));
}

TEST_F(TftpFile, ABlockThatComesLateComesOnce) {
  bool wasDelayed = false;
  pc.server.wire = [&](const Datagram& datagram) {
    Arrivals arrivals{{0, datagram}};
    if (numberOf(datagram) == 2 && !isFromPc(datagram) && !wasDelayed) {
      wasDelayed = true;
      arrivals[0].delay = 3 * kSecond + 100 * kMillisecond;
    } else {
      arrivals[0].delay = 500 * kMillisecond;
    }
    return arrivals;
  };
  EXPECT_EQ(fetchOnly(content(5000)), content(5000));
}

// A file whose last block is lost cannot be had any more: the server goes on when it has sent it.
TEST_F(TftpFile, AnyOneDatagramThatIsLostIsMadeUpFor) {
  const std::vector<Bytes> images{content(700, 1), content(2048, 2), content(9000, 3)};
  std::size_t count = 0;
  bool hasLostLast = false;
  std::size_t tried = 0;
  do {
    count = 0;
    hasLostLast = false;
    pc.server.wire = [&](const Datagram& datagram) {
      if (count++ != tried) return Arrivals{{0, datagram}};
      hasLostLast = isShort(datagram);
      return Arrivals{};
    };
    begin(images);
    const std::string failed = failureOf([&] {
      for (const Bytes& image : images) EXPECT_TRUE(fetch() == image) << tried;
    });
    EXPECT_EQ(failed, hasLostLast ? "linux was not received: the server fell silent." : "");
  } while (++tried < count || hasLostLast);
  // Each file's request, and its blocks with their acknowledgements.
  EXPECT_EQ(tried, 5u + 11 + 37);
}

TEST_F(TftpFile, WhatIsPassedOverDoesNotKeepItWaiting) {
  pc.server.wire = [](const Datagram& datagram) {
    Arrivals arrivals;
    for (Micros delay = 0; delay < 30 * kSecond; delay += 20 * kMillisecond) {
      arrivals.push_back({delay, {kStrangePort, datagram.from, packet(kData, 7, 512)}});
    }
    return arrivals;
  };
  begin({});
  openFile("linux");
  pc.server.wire = {};
  EXPECT_EQ(failureOf([] { readFile(); }), "linux was not received: the server does not answer.");
  EXPECT_THAT(requestTicks(), ElementsAre(0, kPatience, 2 * kPatience, 3 * kPatience));
}

// Does whatever wires do, each seed in its own measure.
class BadWire {
 public:
  explicit BadWire(unsigned seed) : random_(seed) {
    lost_ = draw(25);
    repeated_ = draw(25);
    delayed_ = draw(40);
    longest_ = draw(2) == 0 ? 400 : 6000;
  }

  unsigned draw(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

  Arrivals operator()(const Datagram& datagram) {
    Arrivals arrivals;
    if (draw(100) >= lost_) arrivals.push_back({delay(), datagram});
    if (draw(100) < repeated_) arrivals.push_back({delay(), datagram});
    return arrivals;
  }

 private:
  Micros delay() { return draw(100) < delayed_ ? draw(longest_) * kMillisecond : 0; }

  std::mt19937 random_;
  unsigned lost_, repeated_, delayed_, longest_;
};

// To the program this is like a request that was lost.
TEST_F(TftpFile, WhoseOnlyBlockIsLostIsMistakenForTheNextOne) {
  begin({content(64, 1), content(700, 2)});
  pc.server.wire = [](const Datagram& datagram) {
    return datagram.bytes.size() == 4 + 64 ? Arrivals{} : Arrivals{{0, datagram}};
  };
  EXPECT_EQ(fetch(), content(700, 2));
  EXPECT_EQ(requestTicks().size(), 2u);
}

// So a file is one of those whose turn it may be, but never a part or a mixture.
TEST_F(TftpFile, OverAnyWireIsWholeOrFails) {
  int wholes = 0;
  for (unsigned seed = 1; seed <= 2000; ++seed) {
    BadWire wire(seed);
    pc.server.wire = std::ref(wire);
    std::vector<Bytes> images;
    for (std::size_t file = 0; file < 3; ++file) {
      const std::size_t size = wire.draw(3) == 0 ? wire.draw(5) * 512 : wire.draw(5000);
      images.push_back(content(size, file));
    }
    begin(images);
    const std::string failed = failureOf([&] {
      for (std::size_t file = 0; file < images.size(); ++file) {
        const auto turn = images.begin() + static_cast<std::ptrdiff_t>(file);
        EXPECT_NE(std::find(turn, images.end(), fetch()), images.end()) << seed;
        ++wholes;
      }
    });
    if (!failed.empty()) {
      EXPECT_THAT(failed, AnyOf(EndsWith(" was not received: the server does not answer."),
                                EndsWith(" was not received: the server fell silent.")));
    }
  }
  EXPECT_GT(wholes, 1000);
}

}  // namespace
}  // namespace omniset::loader::test
