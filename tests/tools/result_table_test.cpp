// The outcome of a stitching run, for people.
#include "velmorn/result_table.h"

#include <gmock/gmock.h>

#include "tools/stitched_sample.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(ResultTable, HasALinePerCamera) {
  EXPECT_EQ(resultTable(stitchedSample()),
            "camera  linked   residual  rotation [deg]      x      y       z  distance\n"
            "left    (base)     0.0000           0.000  0.000  0.000   0.000     0.000\n"
            "right   to left    0.2500          90.000  3.000  4.000  12.000    13.000\n");
}

TEST(ResultTable, CutsLongIds) {
  const std::string table = resultTable(stitchedSample(std::string(511, 'x')));
  EXPECT_THAT(table, HasSubstr(std::string(21, 'x') + "...  to left"));
}

TEST(ResultTable, CutsBetweenCharacters) {
  std::string id;
  for (int i = 0; i < 30; ++i) id += "\xc3\xbc";
  EXPECT_THAT(resultTable(stitchedSample(id)), HasSubstr("\n" + id.substr(0, 42) + "...  to left"));
}

TEST(ResultTable, PrintsPercentSignsAsTheyAre) {
  EXPECT_THAT(resultTable(stitchedSample("100%s%n")), HasSubstr("100%s%n  to left"));
}

} // namespace
} // namespace velmorn::tool
