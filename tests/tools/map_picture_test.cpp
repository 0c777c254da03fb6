// Pictures with axes: where the cells and the colour bar are, and that nothing leaves the canvas.
#include "velmorn/map_picture.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

const cv::Vec3b kRed(0, 0, 255);
const cv::Vec3b kBlue(255, 0, 0);
const cv::Vec3b kWhite(255, 255, 255);

// The smallest rectangle with all pixels of the colour.
cv::Rect extentOf(const cv::Mat& picture, const cv::Vec3b& colour) {
  cv::Mat mask;
  cv::inRange(picture, colour, colour, mask);
  std::vector<cv::Point> places;
  cv::findNonZero(mask, places);
  if (places.empty()) return {};
  cv::Point least = places.front();
  cv::Point most = places.front();
  for (const cv::Point& place : places) {
    least = {std::min(least.x, place.x), std::min(least.y, place.y)};
    most = {std::max(most.x, place.x), std::max(most.y, place.y)};
  }
  return {least, most + cv::Point(1, 1)};
}

// A grid in red; a blue cell in its last column and row.
cv::Mat cellsOf(cv::Size size) {
  cv::Mat cells(size, CV_8UC3, cv::Scalar(kRed));
  cells.at<cv::Vec3b>(size.height - 1, size.width - 1) = kBlue;
  return cells;
}

cv::Mat pictureOf(cv::Size size, const std::optional<ColourBar>& bar = std::nullopt) {
  return drawMapPicture(cellsOf(size), {-100, 12345, 0.5, size}, bar);
}

TEST(MapPicture, ShowsCellsAsTheyAre) {
  const cv::Mat picture = pictureOf({700, 500});
  const cv::Rect plot = extentOf(picture, kRed);
  EXPECT_EQ(plot.size(), cv::Size(700, 500));
  EXPECT_EQ(picture.at<cv::Vec3b>(plot.br() - cv::Point(1, 1)), kBlue);
}

TEST(MapPicture, EnlargesSmallGridsCellByCell) {
  const cv::Mat picture = pictureOf({20, 10});
  EXPECT_EQ(extentOf(picture, kRed).size(), cv::Size(900, 450));
  const cv::Rect last = extentOf(picture, kBlue);
  EXPECT_EQ(last.size(), cv::Size(45, 45));
  EXPECT_EQ(last.br(), extentOf(picture, kRed).br());
}

TEST(MapPicture, ThinsOutLargeGrids) {
  const cv::Mat picture = pictureOf({9000, 30});
  EXPECT_EQ(extentOf(picture, kRed).size(), cv::Size(3000, 10));
}

TEST(MapPicture, LeavesAMarginRoundEverything) {
  const ColourBar bar{"depth", {kBlue, kRed}, {{0, "1234567 near"}, {1, "1234567 far"}}};
  for (const cv::Size size : {cv::Size(1, 1), cv::Size(1, 3000), cv::Size(3000, 1),
                              cv::Size(500, 500), cv::Size(4000, 100)}) {
    for (const bool withBar : {false, true}) {
      cv::Mat picture = pictureOf(size, withBar ? std::optional(bar) : std::nullopt);
      const cv::Size canvas = picture.size();
      cv::Mat inside = picture(cv::Rect(4, 4, canvas.width - 8, canvas.height - 8));
      inside.setTo(cv::Scalar(kWhite));
      EXPECT_EQ(extentOf(picture, kWhite).size(), canvas);
      EXPECT_EQ(cv::norm(picture, cv::Mat(canvas, CV_8UC3, cv::Scalar(kWhite)), cv::NORM_INF), 0)
          << size;
    }
  }
}

TEST(MapPicture, StandsTheColourBarOnItsFirstColour) {
  const cv::Vec3b foot(10, 200, 10);
  const cv::Vec3b head(200, 10, 200);
  const ColourBar bar{"z", {foot, head}, {{0, "low"}, {1, "high"}}};
  const cv::Mat picture = pictureOf({700, 600}, bar);
  const cv::Rect plot = extentOf(picture, kRed);
  const cv::Rect lower = extentOf(picture, foot);
  const cv::Rect upper = extentOf(picture, head);
  EXPECT_GT(lower.x, plot.br().x);
  EXPECT_EQ(upper.br().y, lower.y);
  EXPECT_NEAR(upper.height, 300, 2);
  EXPECT_NEAR(lower.br().y, plot.br().y, 2);
}

} // namespace
} // namespace velmorn::tool
