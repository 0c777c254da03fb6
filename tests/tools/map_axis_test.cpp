// Ticks along one side of a picture.
#include "velmorn/map_axis.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

// 250 units on 500 pixels from -100 on; 80 pixels are 40 units, so the step is 50.
TEST(MapAxis, MarksRoundNumbers) {
  const std::vector<MapTick> ticks = ticksAlong({-100, 0.5, 500}, 80);
  ASSERT_EQ(ticks.size(), 6U);
  EXPECT_EQ(ticks[0].pixel, 0);
  EXPECT_EQ(ticks[0].text, "-100");
  EXPECT_EQ(ticks[2].pixel, 200);
  EXPECT_EQ(ticks[2].text, "0");
  EXPECT_EQ(ticks[5].pixel, 500);
  EXPECT_EQ(ticks[5].text, "150");
}

TEST(MapAxis, LeavesRoomBetweenTheNumbers) {
  for (const int length : {1, 20, 600, 1500, 4000}) {
    for (const double unitsPerPixel : {1e-9, 0.013, 1.0, 3e7}) {
      for (const double from : {0.0, -500.0, 123456.0, 1e6}) {
        const LabelPen pen(length);
        const MapAxis axis{from, unitsPerPixel, length};
        const std::vector<MapTick> ticks = ticksAlong(axis, spacingBeside(axis, pen));
        for (std::size_t i = 1; i < ticks.size(); ++i) {
          const int apart = ticks[i].pixel - ticks[i - 1].pixel;
          const int needed = (pen.widthOf(ticks[i].text) + pen.widthOf(ticks[i - 1].text)) / 2;
          EXPECT_GE(apart, needed + pen.height()) << from << ' ' << unitsPerPixel;
        }
      }
    }
  }
}

} // namespace
} // namespace velmorn::tool
