// Lists of numbers on the command line.
#include "velmorn/arguments.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(Arguments, ReadsListsOfNumbers) {
  EXPECT_THAT(parseNumbers("1,-2.5,3e2", 3), Optional(ElementsAre(1.0F, -2.5F, 300.0F)));
  EXPECT_THAT(parseNumbers("-.5", 1), Optional(ElementsAre(-0.5F)));
}

TEST(Arguments, RefusesOtherTexts) {
  for (const char* text : {"", "1,2", "1,2,3,4", "1,2,3,", ",1,2", "1,,3", "1, 2,3", "1,2,x",
                           "1;2;3", "1,2,nan", "1,2,inf", "1,2,1e39", "1,2,3mm"}) {
    EXPECT_FALSE(parseNumbers(text, 3)) << text;
  }
}

TEST(Arguments, ReadsRegions) {
  const std::optional<tagOzKRect2Df32> region = parseRegion("-1.5,2,3,4e2");
  ASSERT_TRUE(region);
  EXPECT_EQ(region->x1, -1.5F);
  EXPECT_EQ(region->y1, 2.0F);
  EXPECT_EQ(region->x2, 3.0F);
  EXPECT_EQ(region->y2, 400.0F);
  for (const char* text : {"", "1,2,3", "1,2,3,4,5", "1,2,0,4", "1,2,3,1", "1,2,1,4", "1,2,3,2",
                           "1,2,nan,4", "1 2 3 4", "1,2,3,inf"}) {
    EXPECT_FALSE(parseRegion(text)) << text;
  }
}

TEST(Arguments, ReadsImageSizes) {
  EXPECT_THAT(parseImageSize("640x480"), Optional(cv::Size(640, 480)));
  for (const char* text : {"", "640", "x", "640x", "0x480", "640x-1", "640x65536", "640x480x3",
                           "640 x 480", "6e2x480", "99999999999x1"}) {
    EXPECT_FALSE(parseImageSize(text)) << text;
  }
}

} // namespace
} // namespace velmorn::tool
