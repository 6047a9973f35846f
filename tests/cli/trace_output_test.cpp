#include "cli/trace_output.h"

#include <gtest/gtest.h>

#include <sstream>

namespace omniset::test {

TEST(TraceOutput, ShowsControlCharactersEscaped) {
  std::ostringstream out;
  const TraceOutput output(out, true);
  traceLine("Data: \x1b[2J\tx");
  EXPECT_EQ(out.str(), "Data: \\x1B[2J\tx\n");
}

TEST(TraceOutput, DropsTheTraceUnlessEnabled) {
  std::ostringstream out;
  const TraceOutput output(out, false);
  EXPECT_FALSE(traceEnabled());
  traceLine("unheard");
  EXPECT_EQ(out.str(), "");
}

TEST(TraceOutput, GivesTheTraceBackAtItsEnd) {
  std::ostringstream outer, inner;
  const TraceOutput before(outer, true);
  { const TraceOutput output(inner, false); }
  traceLine("again");
  EXPECT_EQ(outer.str(), "again\n");
}

}  // namespace omniset::test
