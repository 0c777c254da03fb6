// The conveyor example writes what the tool reads.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "parcels.h"
#include "support/temp_dir.h"
#include "tools/process.h"
#include "velmorn/camera_file.h"
#include "velmorn/depth_image.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"
#include "velmorn/scene_shading.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

class ConveyorScene : public TempDirTest {
 protected:
  ProcessResult run(const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_CONVEYOR_SCENE, arguments, dir());
  }
};

// The share of a camera's pixels that a point of the belt's surface, as the result file places the
// cameras, is within 4 of: the belt is 1500 below the first camera.
double shareOnBelt(const std::string& id) {
  const std::string stem = "scene/" + id;
  const cv::Matx44d baseFromCam = readBaseFromCam("scene/result.json").at(id);
  const PointCloud cloud =
      pointsFromDepth(readDepthImage(stem + "-depth.png"), readCameraFile(stem + ".yml"), 1);
  int onBelt = 0;
  for (const auto& point : cloud.points) {
    const cv::Vec4d inBase = baseFromCam * cv::Vec4d(point.x, point.y, point.z, 1);
    if (std::abs(inBase[2] - 1500) < 4) ++onBelt;
  }
  return onBelt / static_cast<double>(cloud.points.size() + cloud.skipped);
}

void expectJobsNameTheFiles() {
  const auto withColor = nlohmann::json::parse(readFile("scene/aerial.json"));
  EXPECT_EQ(withColor.at("region").size(), 4U);
  EXPECT_EQ(withColor.at("resolution"), 2);
  EXPECT_EQ(withColor.at("result"), "result.json");
  ASSERT_EQ(withColor.at("cameras").size(), 2U);
  const nlohmann::json second = {{"id", "cam2"},
                                 {"depth", "cam2-depth.png"},
                                 {"color", "cam2-color.png"},
                                 {"intrinsics", "cam2.yml"}};
  EXPECT_EQ(withColor["cameras"][1], second);

  auto withoutColor = withColor;
  withoutColor["resolution"] = 3;
  for (auto& camera : withoutColor["cameras"]) camera.erase("color");
  EXPECT_EQ(nlohmann::json::parse(readFile("scene/aerial-depth.json")), withoutColor);
}

TEST_F(ConveyorScene, WritesWhatTheToolReads) {
  const ProcessResult result = run({"scene"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");

  const auto baseFromCam = readBaseFromCam("scene/result.json");
  ASSERT_EQ(baseFromCam.size(), 2U);
  EXPECT_EQ(baseFromCam.at("cam1"), cv::Matx44d::eye());
  EXPECT_NEAR(cv::norm(translationOf(baseFromCam.at("cam2"))), 700, 1e-9);
  EXPECT_NEAR(rotationDegrees(baseFromCam.at("cam2")), 5, 1e-9);

  for (const std::string id : {"cam1", "cam2"}) {
    EXPECT_EQ(readCameraFile("scene/" + id + ".yml").imageSize, cv::Size(1280, 960));
    const cv::Mat color = cv::imread("scene/" + id + "-color.png", cv::IMREAD_UNCHANGED);
    EXPECT_EQ(color.type(), CV_8UC3);
    EXPECT_EQ(color.size(), cv::Size(1280, 960));
    const cv::Mat depth = readDepthImage("scene/" + id + "-depth.png");
    EXPECT_EQ(depth.size(), color.size());
    // Holes and steps; most of the picture is there.
    EXPECT_GT(cv::countNonZero(depth), 1280 * 960 * 9 / 10);
    EXPECT_LT(cv::countNonZero(depth), 1280 * 960);
    EXPECT_GT(shareOnBelt(id), 0.3);
  }
  EXPECT_EQ(cv::imread("scene/cameras.png").size(), cv::Size(1280, 480));
  expectJobsNameTheFiles();
}

// What a camera without perspective would see at the middle of a cell.
cv::Vec3d colorFromAbove(const Scene& scene, const SceneGeometry& geometry,
                         const cv::Vec3d& inFirst) {
  const cv::Matx44d worldFromFirst = camerasOverBelt()[0].camera.worldFromCam;
  const cv::Vec4d place = worldFromFirst * cv::Vec4d(inFirst[0], inFirst[1], inFirst[2], 1);
  return seenColor(scene, geometry, {{place[0], place[1], place[2]}, {0, 0, -1}});
}

// Covered cells that do not have the scene's colour, as a share. Cells across an edge may not have
// it.
double shareOfWrongCells(const cv::Mat& picture, double x1, double y1, double resolution) {
  constexpr double kTolerance = 3;
  const Scene scene = parcelsOnBelt();
  const SceneGeometry geometry(scene);
  int covered = 0, wrong = 0;
  for (int row = 0; row < picture.rows; ++row) {
    for (int column = 0; column < picture.cols; ++column) {
      const cv::Vec3d color = picture.at<cv::Vec3b>(row, column);
      if (color == cv::Vec3d(0, 0, 0)) continue;
      const cv::Vec3d cell(x1 + (column + 0.5) * resolution, y1 + (row + 0.5) * resolution, 0);
      ++covered;
      const cv::Vec3d difference = color - colorFromAbove(scene, geometry, cell);
      if (cv::norm(difference, cv::NORM_INF) > kTolerance) ++wrong;
    }
  }
  EXPECT_GT(covered, static_cast<int>(picture.total()) * 8 / 10);
  return wrong / static_cast<double>(covered);
}

TEST_F(ConveyorScene, AerialViewIsTheSceneFromAbove) {
  ASSERT_EQ(run({"scene"}).status, 0);
  const ProcessResult result =
      runProcess(VELMORN_TOOL, {"aerial", "scene/aerial.json", "-o", "aerial.png"}, dir());
  ASSERT_EQ(result.status, 0) << result.err;
  const cv::Mat picture = cv::imread("aerial.png");
  EXPECT_EQ(picture.size(), cv::Size(1176, 561));
  constexpr double kAtEdges = 0.018;
  EXPECT_LT(shareOfWrongCells(picture, -920, -560, 2), kAtEdges);
  // One cell's shift shows.
  EXPECT_GT(shareOfWrongCells(picture, -918, -560, 2), kAtEdges);
  EXPECT_GT(shareOfWrongCells(picture, -920, -562, 2), kAtEdges);
}

TEST_F(ConveyorScene, SaysWhatIsWrong) {
  EXPECT_EQ(run({}).status, 2);
  writeFile("file", "in the way");
  const ProcessResult result = run({"file/scene"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("conveyor_scene: "));
  EXPECT_THAT(result.err, HasSubstr("file/scene"));
}

} // namespace
} // namespace velmorn::tool
