// The reference plane of a cloud: known truth, and clouds without a plane.
#include "velmorn/reference_plane.h"

#include <gmock/gmock.h>

#include <cmath>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

class ToolReferencePlane : public TempDirTest {
 protected:
  ReferencePlane fit(const Points& points, float threshold = 1, std::size_t skipped = 0) {
    PointCloud cloud{points, skipped};
    return fitReferencePlane(cloud, threshold);
  }
  std::string errorOf(const Points& points, std::size_t skipped = 0) {
    return toolError([&] { fit(points, 1, skipped); });
  }
};

TEST_F(ToolReferencePlane, FindsTheTruth) {
  const ReferencePlane plane = fit(gridOnPlane(30));
  const double length = std::sqrt(1.05);
  const cv::Vec4d expected(-0.1 / length, -0.2 / length, -1 / length, 500);
  for (int i = 0; i < 4; ++i) EXPECT_NEAR(plane.model.coefficients[i], expected[i], 1e-2) << i;
  EXPECT_EQ(plane.inliers, 300U);
  // 30 of 330 points are 50 above it along z.
  EXPECT_NEAR(plane.meanDistance, 50 / length / 11, 5e-3);
  const cv::Vec3d& point = plane.model.point;
  EXPECT_NEAR(point.dot({expected[0], expected[1], expected[2]}) + 500, 0, 1e-2);
  EXPECT_NEAR(point[0], 0, 1e-2);
  EXPECT_NEAR(point[1], 0, 1e-2);
}

TEST_F(ToolReferencePlane, SaysWhyThereAreTooFewPoints) {
  EXPECT_EQ(errorOf({}), "no points");
  EXPECT_EQ(errorOf({}, 7), "0 usable points of 7, a plane needs 3");
  EXPECT_EQ(errorOf({{0, 0, 1}}, 2), "1 usable point of 3, a plane needs 3");
  EXPECT_EQ(errorOf({{0, 0, 1}, {1, 0, 1}}), "2 usable points of 2, a plane needs 3");
}

TEST_F(ToolReferencePlane, SaysWhyThereIsNoPlane) {
  EXPECT_THAT(errorOf(Points(50, {1, 2, 3})), HasSubstr("no plane found"));
  Points wall;
  for (int i = 0; i < 100; ++i) {
    wall.push_back({5, static_cast<float>(i % 10), static_cast<float>(100 + i / 10)});
  }
  EXPECT_THAT(errorOf(wall), HasSubstr("the camera's x axis"));
  for (tagOzKPoint3Df32& point : wall) std::swap(point.x, point.y);
  EXPECT_THAT(errorOf(wall), HasSubstr("not finite"));
}

} // namespace
} // namespace velmorn::tool
