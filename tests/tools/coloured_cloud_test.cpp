// Merged clouds: colours, cameras, and thinning.
#include "velmorn/coloured_cloud.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class ColouredCloudFile : public TempDirTest {
 protected:
  ColouredCloud read(const std::string& text) {
    writeFile("cloud.ply", text);
    return readColouredCloud("cloud.ply");
  }
};

constexpr const char* kMerged =
    "ply\nformat ascii 1.0\ncomment camera 0 cam 1\ncomment camera 1 cam2\ncomment by a test\n"
    "element vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
    "property uchar red\nproperty uchar green\nproperty uchar blue\nproperty uchar camera\n"
    "end_header\n1 2 3 255 128 0 0\nnan 0 0 1 1 1 0\n4 5 6 7 8 9 1\n";

TEST_F(ColouredCloudFile, HasColoursAndCameras) {
  const ColouredCloud cloud = read(kMerged);
  EXPECT_THAT(cloud.points, ElementsAre(cv::Vec3f(1, 2, 3), cv::Vec3f(4, 5, 6)));
  EXPECT_THAT(cloud.colours, ElementsAre(cv::Vec3b(255, 128, 0), cv::Vec3b(7, 8, 9)));
  EXPECT_THAT(cloud.cameras, ElementsAre(0, 1));
  EXPECT_THAT(cloud.cameraIds, ElementsAre("cam 1", "cam2"));
  EXPECT_EQ(cloud.read, 3U);
}

TEST_F(ColouredCloudFile, NeedsNeither) {
  const ColouredCloud cloud = read(plyTextInDoubles({{1, 2, 3}}));
  EXPECT_EQ(cloud.points.size(), 1U);
  EXPECT_TRUE(cloud.colours.empty());
  EXPECT_TRUE(cloud.cameras.empty());
  EXPECT_TRUE(cloud.cameraIds.empty());
}

TEST_F(ColouredCloudFile, TakesNoOtherTypesForColours) {
  std::string text = with(kMerged, "uchar camera", "int camera");
  for (const char* name : {" red", " green", " blue"})
    text = with(text, std::string("uchar") + name, std::string("float") + name);
  const ColouredCloud cloud = read(text);
  EXPECT_EQ(cloud.points.size(), 2U);
  EXPECT_TRUE(cloud.colours.empty());
  EXPECT_TRUE(cloud.cameras.empty());
}

TEST_F(ColouredCloudFile, IgnoresCommentsOutOfOrder) {
  EXPECT_THAT(read(with(kMerged, "camera 0", "camera 5")).cameraIds, ElementsAre());
}

TEST_F(ColouredCloudFile, NamesADamagedFile) {
  EXPECT_THAT(toolError([&] { read(with(kMerged, "vertex 3", "vertex 4000000")); }),
              StartsWith("cloud.ply: cut off"));
  EXPECT_THAT(toolError([&] { read("ply\n"); }), StartsWith("cloud.ply: "));
  EXPECT_EQ(toolError([] { readColouredCloud("gone.ply"); }), "gone.ply: not a regular file");
  EXPECT_EQ(toolError([&] { read(with(kMerged, "float x", "float a")); }),
            "cloud.ply: the points have no \"x\"");
}

TEST(ThinnedCloud, TakesOneOfEveryPart) {
  ColouredCloud cloud;
  cloud.read = 12;
  for (int i = 0; i < 10; ++i) {
    cloud.points.emplace_back(static_cast<float>(i), 0.F, 0.F);
    cloud.colours.emplace_back(static_cast<uchar>(i), uchar{0}, uchar{0});
    cloud.cameras.push_back(static_cast<std::uint8_t>(i));
  }
  const ColouredCloud part = thinned(cloud, 5);
  ASSERT_EQ(part.points.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    const auto number = static_cast<std::size_t>(part.points[i][0]);
    EXPECT_EQ(number / 2, i);
    EXPECT_EQ(part.colours[i][0], number);
    EXPECT_EQ(part.cameras[i], number);
  }
  EXPECT_EQ(part.read, 12U);
  EXPECT_EQ(thinned(cloud, 5).points, part.points);
  EXPECT_EQ(thinned(cloud, 10).points, cloud.points);
}

} // namespace
} // namespace velmorn::tool
