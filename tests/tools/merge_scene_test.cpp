// `velmorn merge` on rendered images: every point lies on the scene's surfaces.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/merge_builder.h"
#include "tools/process.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"
#include "velmorn/scene_render.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

constexpr double kStep = 0.25; // length units per count of the depth images

// Two boxes on a belt; the second is turned.
Scene scene() {
  Scene scene;
  scene.belt.length = 4000;
  scene.belt.width = 3000;
  scene.boxes = {{{-150, 50, 0}, {200, 150, 120}, 0, {200, 100, 50}, 0, {}},
                 {{200, -60, 0}, {180, 220, 80}, 30, {50, 100, 200}, 0, {}}};
  return scene;
}

// 320 x 240 pixels with a lens that bends by some pixels in the corners.
SceneCamera cameraAt(const cv::Vec3d& position, double tiltDegrees) {
  SceneCamera camera;
  camera.model.intrinsic = {{300, 0, 161, 0, 305, 118, 0, 0, 1}};
  camera.model.distortion.coeffs[0] = -0.12;
  camera.model.distortion.coeffs[1] = 0.03;
  camera.model.distortion.coeffs[2] = 0.001;
  camera.model.imageSize = {320, 240};
  camera.worldFromCam = lookingDown(position, tiltDegrees);
  return camera;
}

// Distance from a point to the nearest surface: the belt, or the faces of a box.
double distanceToScene(const Scene& scene, const cv::Vec3d& point) {
  double nearest = std::abs(point[2]);
  for (const SceneBox& box : scene.boxes) {
    const double angle = box.degrees * CV_PI / 180;
    const cv::Vec3d p = point - box.foot;
    const cv::Vec3d own(std::cos(angle) * p[0] + std::sin(angle) * p[1],
                        -std::sin(angle) * p[0] + std::cos(angle) * p[1], p[2] - box.size[2] / 2);
    cv::Vec3d over; // beyond the faces; below 0 inside
    for (int axis = 0; axis < 3; ++axis) over[axis] = std::abs(own[axis]) - box.size[axis] / 2;
    const double inside = std::max({over[0], over[1], over[2]});
    const cv::Vec3d outside(std::max(over[0], 0.0), std::max(over[1], 0.0), std::max(over[2], 0.0));
    nearest = std::min(nearest, inside < 0 ? -inside : cv::norm(outside));
  }
  return nearest;
}

class MergeScene : public TempDirTest {
 protected:
  json writeCamera(const std::string& id, const SceneCamera& camera) {
    DepthEffects effects;
    effects.step = kStep;
    cv::imwrite((dir() / (id + "-depth.png")).string(), renderDepth(scene(), camera, effects));
    cv::imwrite((dir() / (id + "-color.png")).string(), renderColor(scene(), camera));
    const double* m = camera.model.intrinsic.matrix;
    const double* d = camera.model.distortion.coeffs;
    return {{"id", id},
            {"baseFromCam", rowsOf(inversePose(base.worldFromCam) * camera.worldFromCam)},
            {"intrinsics",
             {{"file", id + ".yml"},
              {"imageSize", {320, 240}},
              {"matrix", {{m[0], 0, m[2]}, {0, m[4], m[5]}, {0, 0, 1}}},
              {"distortion", std::vector<double>(d, d + 12)}}}};
  }

  // The frame is the belt's: worldFromCam of the base.
  json writeFiles() {
    const json result = {{"board", "data-code"},
                         {"cameras", {writeCamera("left", base), writeCamera("right", right)}}};
    writeFile(dir() / "result.json", result.dump());
    writeFile(dir() / "belt.json",
              json{{"direction", "beltFromCam"}, {"extrinsic", rowsOf(base.worldFromCam)}}.dump());
    json job = {{"result", "result.json"}, {"depth_unit", kStep}, {"frame", "belt.json"}};
    for (const char* id : {"left", "right"}) {
      job["cameras"].push_back({{"id", id},
                                {"depth", std::string(id) + "-depth.png"},
                                {"color", std::string(id) + "-color.png"}});
    }
    return job;
  }

  ProcessResult run(const json& job) {
    writeFile(dir() / "job.json", job.dump());
    return runProcess(VELMORN_TOOL, {"merge", "job.json", "--seams", "seams.json"}, dir());
  }

  json seam() { return json::parse(readFile(dir() / "seams.json"))["seams"][0]; }

  const SceneCamera base = cameraAt({-150, 0, 1000}, 5);
  const SceneCamera right = cameraAt({250, 30, 1100}, -12);
};

TEST_F(MergeScene, EveryPointLiesOnASurface) {
  const ProcessResult result = run(writeFiles());
  ASSERT_EQ(result.status, 0) << result.err;
  const std::vector<CloudPoint> points = readMergedCloud(dir() / "merged.ply");
  EXPECT_GT(points.size(), 150000U);
  double farthest = 0;
  int onBoxes = 0;
  for (const CloudPoint& point : points) {
    farthest = std::max(farthest, distanceToScene(scene(), point.position));
    if (point.position[2] > 70) ++onBoxes;
  }
  // Half a step along the line of sight, which is up to 1.3 times as long as its depth.
  EXPECT_LT(farthest, 0.75 * kStep);
  EXPECT_GT(onBoxes, 10000);
  EXPECT_GT(std::count_if(points.begin(), points.end(),
                          [](const CloudPoint& point) { return point.camera == 1; }),
            70000);
}

TEST_F(MergeScene, SeamIsAsGoodAsTheDepthStep) {
  const json job = writeFiles();
  ASSERT_EQ(run(job).status, 0);
  EXPECT_LT(seam()["median"], kStep);
  EXPECT_GT(seam()["share"], 0.85);

  json result = json::parse(readFile(dir() / "result.json"));
  json rows = result["cameras"][1]["baseFromCam"];
  rows[2][3] = rows[2][3].get<double>() + 5;
  setBaseFromCam(dir() / "result.json", 1, rows);
  ASSERT_EQ(run(job).status, 0);
  EXPECT_NEAR(seam()["median"].get<double>(), 5, 0.25);
}

TEST_F(MergeScene, WarnsWhenTheSurfacesAreFarApart) {
  const json job = writeFiles();
  json result = json::parse(readFile(dir() / "result.json"));
  json rows = result["cameras"][1]["baseFromCam"];
  rows[2][3] = rows[2][3].get<double>() + 400;
  setBaseFromCam(dir() / "result.json", 1, rows);
  const ProcessResult far = run(job);
  ASSERT_EQ(far.status, 0) << far.err;
  EXPECT_EQ(
      lastLine(far.err),
      "velmorn: warning: cameras \"left\" and \"right\" look at one place, but their surfaces "
      "there do not lie together");
  EXPECT_TRUE(seam()["median"].is_null());
}

} // namespace
} // namespace velmorn::tool
