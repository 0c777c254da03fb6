// Point cloud files in every format: the same points, or a message that names the file.
#include "velmorn/point_input.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::StartsWith;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

class PointInput : public TempDirTest {
 protected:
  PointCloud read(const std::string& name, const std::string& content) {
    writeFile(name, content);
    return readPointCloud(name);
  }
  std::string errorOf(const std::string& name, const std::string& content) {
    return toolError([&] { read(name, content); });
  }
  void expectPoints(const PointCloud& cloud, const Points& expected) {
    ASSERT_EQ(cloud.points.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(cloud.points[i].x, expected[i].x);
      EXPECT_EQ(cloud.points[i].y, expected[i].y);
      EXPECT_EQ(cloud.points[i].z, expected[i].z);
    }
  }

  const Points grid = gridOnPlane();
};

TEST_F(PointInput, KnowsTheFormatByTheExtension) {
  EXPECT_EQ(pointFormatOf("a.b/cloud.PLY"), PointFormat::kPly);
  EXPECT_EQ(pointFormatOf("cloud.pcd"), PointFormat::kPcd);
  EXPECT_EQ(pointFormatOf("cloud.xyz"), PointFormat::kXyz);
  for (const char* name : {"d.png", "d.tif", "d.tiff"}) {
    EXPECT_EQ(pointFormatOf(name), PointFormat::kDepthImage);
  }
  EXPECT_FALSE(pointFormatOf("cloud.ply.gz"));
  EXPECT_FALSE(pointFormatOf("ply"));
}

TEST_F(PointInput, GivesTheSamePointsFromEveryFormat) {
  expectPoints(read("a.xyz", xyzText(grid)), grid);
  expectPoints(read("a.ply", plyText(grid, PlyForm::kText)), grid);
  expectPoints(read("b.ply", plyText(grid, PlyForm::kLittleEndian)), grid);
  expectPoints(read("c.ply", plyText(grid, PlyForm::kBigEndian)), grid);
  expectPoints(read("d.ply", plyTextInDoubles(grid)), grid);
  expectPoints(read("a.pcd", pcdText(grid, PcdForm::kText)), grid);
  expectPoints(read("b.pcd", pcdText(grid, PcdForm::kBinary)), grid);
  expectPoints(read("c.pcd", pcdText(grid, PcdForm::kCompressed)), grid);
}

TEST_F(PointInput, CountsPointsThatAreNotFinite) {
  Points points = grid;
  points[5].x = kNan;
  points[7].z = kInfinity;
  points[9].y = -kInfinity;
  for (const auto& [name, content] : std::vector<std::pair<std::string, std::string>>{
           {"a.xyz", xyzText(points)},
           {"a.pcd", pcdText(points, PcdForm::kText)},
           {"b.pcd", pcdText(points, PcdForm::kBinary)},
           {"c.pcd", pcdText(points, PcdForm::kCompressed)},
           {"b.ply", plyText(points, PlyForm::kLittleEndian)},
           {"c.ply", plyText(points, PlyForm::kBigEndian)}}) {
    const PointCloud cloud = read(name, content);
    EXPECT_EQ(cloud.points.size(), 297U) << name;
    EXPECT_EQ(cloud.skipped, 3U) << name;
  }
}

TEST_F(PointInput, NamesTheFileInEveryMessage) {
  EXPECT_EQ(errorOf("a.xyz", "1 2\n"), "a.xyz: line 1: x y z are wanted, there is less");
  EXPECT_EQ(errorOf("a.ply", "no ply"), "a.ply: the header has no line \"end_header\"");
  EXPECT_EQ(errorOf("a.pcd", "no pcd"), "a.pcd: the header has no line \"DATA\"");
  EXPECT_EQ(errorOf("a.obj", "v 1 2 3"), "a.obj: not a .ply, .pcd or .xyz file");
  EXPECT_EQ(toolError([] { readPointCloud("gone.ply"); }), "gone.ply: not a regular file");
}

TEST_F(PointInput, SaysWhichCoordinateIsMissing) {
  EXPECT_EQ(errorOf("a.ply", with(plyText(grid, PlyForm::kText), "float z", "float depth")),
            "a.ply: the points have no \"z\"");
  EXPECT_EQ(errorOf("a.pcd", with(pcdText(grid, PcdForm::kBinary), "FIELDS x", "FIELDS u")),
            "a.pcd: the points have no \"x\"");
  EXPECT_EQ(errorOf("b.pcd", with(pcdText(grid, PcdForm::kBinary), "TYPE F", "TYPE U")),
            "b.pcd: \"x\" is not a floating-point number");
}

TEST_F(PointInput, SurvivesFilesCutAnywhere) {
  for (const auto& [name, content] : std::vector<std::pair<std::string, std::string>>{
           {"a.ply", plyText(grid, PlyForm::kText)},
           {"b.ply", plyText(grid, PlyForm::kLittleEndian)},
           {"a.pcd", pcdText(grid, PcdForm::kText)},
           {"b.pcd", pcdText(grid, PcdForm::kBinary)},
           {"c.pcd", pcdText(grid, PcdForm::kCompressed)}}) {
    for (std::size_t size = 0; size < content.size(); size += 37) {
      errorOf(name, content.substr(0, size));
    }
    EXPECT_THAT(errorOf(name, content.substr(0, content.size() / 2)), StartsWith(name + ": "));
  }
}

} // namespace
} // namespace velmorn::tool
