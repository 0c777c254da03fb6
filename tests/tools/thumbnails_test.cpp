// The shots' pictures: corners, sizes, limits, and images that are not there.
#include "velmorn/thumbnails.h"

#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kJpegStart = "/9j/"; // FF D8 FF in base 64

class Thumbnails : public TempDirTest {
 protected:
  Thumbnails() {
    cv::imwrite("used.png", cv::Mat(480, 640, CV_8UC1, cv::Scalar(90)));
    cv::imwrite("refused.png", cv::Mat(240, 320, CV_16UC1, cv::Scalar(9000)));
    record_.cameras[0].shots = {usedShot(0.1, {{10, 10}}), refusedShot("no-board")};
    record_.cameras[1].shots = {usedShot(0.1, {})};
  }

  std::vector<std::vector<ShotPicture>> take(const PictureLimits& limits = {}) {
    return shotPictures(record_, limits,
                        [&](auto& camera, auto&, auto&) { seen_ += camera.id + " "; });
  }

  StitchRecord record_ = twoCameraRecord();
  std::string seen_;
};

TEST_F(Thumbnails, AreTakenOfEveryShot) {
  const auto pictures = take();
  ASSERT_EQ(pictures.size(), 2U);
  ASSERT_EQ(pictures[0].size(), 2U);
  EXPECT_THAT(pictures[0][0].thumbnail, StartsWith(kJpegStart));
  EXPECT_THAT(pictures[0][0].large, StartsWith(kJpegStart));
  EXPECT_GT(pictures[0][0].large.size(), pictures[0][0].thumbnail.size());
  EXPECT_THAT(pictures[0][1].thumbnail, StartsWith(kJpegStart));
  EXPECT_THAT(pictures[0][1].large, IsEmpty()); // 320 wide already
  EXPECT_EQ(seen_, "left right left ");
}

TEST_F(Thumbnails, NameImagesThatCannotBeShown) {
  std::filesystem::remove("used.png");
  writeFile("refused.png", "no image");
  const auto pictures = take();
  EXPECT_EQ(pictures[0][0].problem, "missing: used.png");
  EXPECT_EQ(pictures[0][1].problem, "not readable: refused.png");
  EXPECT_THAT(pictures[0][0].thumbnail, IsEmpty());
  std::filesystem::create_directory("used.png");
  EXPECT_EQ(take()[0][0].problem, "missing: used.png");
}

TEST_F(Thumbnails, StayWithinTheirLimits) {
  const std::size_t first = take()[0][0].thumbnail.size();
  const auto pictures = take({first, 0});
  EXPECT_THAT(pictures[0][0].thumbnail, Not(IsEmpty()));
  EXPECT_THAT(pictures[0][0].large, IsEmpty());
  EXPECT_EQ(pictures[1][0].problem, "left out, the report would grow too large: used.png");
  EXPECT_EQ(pictures[0][1].problem, "left out, the report would grow too large: refused.png");
}

TEST(PictureWithCorners, IsAtMostSoWideAndTwiceAsHigh) {
  const auto sizeOf = [](int width, int height) {
    return pictureWithCorners(cv::Mat(height, width, CV_8UC3), {}, 320).size();
  };
  EXPECT_EQ(sizeOf(640, 480), cv::Size(320, 240));
  EXPECT_EQ(sizeOf(100, 50), cv::Size(100, 50));
  EXPECT_EQ(sizeOf(100, 6400), cv::Size(10, 640));
  EXPECT_EQ(sizeOf(20000, 1), cv::Size(320, 1));
}

// Half the size: the corner at 99.5, 59.5 is the outer corner of four pixels, as 49.5, 29.5 is.
TEST(PictureWithCorners, HasADotAtEveryCorner) {
  const cv::Mat image(480, 640, CV_8UC3, cv::Scalar(200, 200, 200));
  const cv::Mat picture = pictureWithCorners(image, {{300.5, 200.5}, {100.5, 60.5}}, 320);
  const cv::Vec3b dot(0, 159, 230);
  EXPECT_EQ(picture.at<cv::Vec3b>(30, 50), dot);
  EXPECT_EQ(picture.at<cv::Vec3b>(100, 150), dot);
  EXPECT_EQ(picture.at<cv::Vec3b>(30, 44), cv::Vec3b(200, 200, 200)); // no ring
  EXPECT_NE(picture.at<cv::Vec3b>(100, 144), cv::Vec3b(200, 200, 200));
}

TEST(PictureWithCorners, LeavesOutCornersElsewhere) {
  const cv::Mat image(48, 64, CV_8UC3, cv::Scalar(200, 200, 200));
  const cv::Mat picture = pictureWithCorners(image, {{-1e6, 3}, {3, 1e6}, {70, 3}}, 320);
  EXPECT_EQ(cv::norm(picture, image), 0);
}

} // namespace
} // namespace velmorn::tool
