// Point clouds as plain text: what is taken, and the line of what is not.
#include "velmorn/xyz_file.h"

#include <gmock/gmock.h>

#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

std::string errorOf(const std::string& text) {
  return toolError([&] { parseXyz(text); });
}

TEST(XyzFile, TakesThreeNumbersPerLine) {
  const PointCloud cloud = parseXyz("1 2.5 -3e2\n\t+4\t 5  6 \r\n7 8 9");
  ASSERT_EQ(cloud.points.size(), 3U);
  EXPECT_EQ(cloud.points[0].y, 2.5F);
  EXPECT_EQ(cloud.points[0].z, -300.0F);
  EXPECT_EQ(cloud.points[1].x, 4.0F);
  EXPECT_EQ(cloud.points[2].z, 9.0F);
  EXPECT_EQ(cloud.skipped, 0U);
}

TEST(XyzFile, IgnoresCommentsEmptyLinesAndFurtherColumns) {
  const PointCloud cloud = parseXyz("# x y z\n\n  \t\r\n1 2 3 255 0 red # note\n#4 5 6\n");
  ASSERT_EQ(cloud.points.size(), 1U);
  EXPECT_EQ(cloud.points[0].z, 3.0F);
}

TEST(XyzFile, CountsPointsThatAreNotFinite) {
  const PointCloud cloud = parseXyz("nan nan nan\n1 2 3\n1 inf 3\n1 2 -inf\n1e39 0 0\n");
  EXPECT_EQ(cloud.points.size(), 1U);
  EXPECT_EQ(cloud.skipped, 4U);
}

TEST(XyzFile, AnEmptyTextHasNoPoints) {
  EXPECT_TRUE(parseXyz("").points.empty());
  EXPECT_TRUE(parseXyz("\n\n# nothing").points.empty());
}

TEST(XyzFile, NamesTheLine) {
  EXPECT_EQ(errorOf("1 2 3\n4 5\n"), "line 2: x y z are wanted, there is less");
  EXPECT_EQ(errorOf("1 2 # 3\n"), "line 1: x y z are wanted, there is less");
  EXPECT_EQ(errorOf("\n\n1,2,3\n"), "line 3: \"1,2,3\" is not a number");
  EXPECT_EQ(errorOf("1 2 3mm\n"), "line 1: \"3mm\" is not a number");
  EXPECT_EQ(errorOf("+ 2 3\n"), "line 1: \"+\" is not a number");
  EXPECT_EQ(errorOf("+-1 2 3\n"), "line 1: \"+-1\" is not a number");
  EXPECT_EQ(errorOf("1 2 1e999\n"), "line 1: \"1e999\" is out of range");
  EXPECT_EQ(errorOf(std::string(1, '\0') + " 1 2"), "line 1: \"\" is not a number");
}

TEST(XyzFile, ShowsTheBeginningOfALongWordOnly) {
  EXPECT_EQ(errorOf(std::string(1000, 'x')),
            "line 1: \"" + std::string(40, 'x') + "\" is not a number");
}

} // namespace
} // namespace velmorn::tool
