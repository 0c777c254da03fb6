// The conveyor example writes what the tool reads.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/process.h"
#include "velmorn/camera_file.h"
#include "velmorn/depth_image.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"

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
