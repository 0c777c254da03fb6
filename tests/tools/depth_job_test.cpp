// What job files of depth cameras have in common. Their refusals are in the tests of the commands'
// own files.
#include "velmorn/depth_job.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"
#include "tools/aerial_builder.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

class DepthJob : public TempDirTest {
 protected:
  DepthJob() { writeFile("row.yml", rowCameraYaml()); }

  std::vector<DepthJobCamera> read(const json& cameras, const IntrinsicsById& known = {}) {
    const json job = {{"cameras", cameras}};
    return depthCamerasFrom(JsonObject(job, "", {"cameras"}), "a test", "", known);
  }

  const json fromFile = {{"id", "a"}, {"depth", "a.png"}, {"intrinsics", "row.yml"}};
  const json without = {{"id", "b"}, {"depth", "b.png"}, {"color", "c.png"}};
};

TEST_F(DepthJob, ReadsCameras) {
  const std::vector<DepthJobCamera> cameras = read(json::array({fromFile}));
  ASSERT_EQ(cameras.size(), 1U);
  EXPECT_EQ(cameras[0].id, "a");
  EXPECT_EQ(cameras[0].depthPath, "a.png");
  EXPECT_EQ(cameras[0].colorPath, "");
  EXPECT_EQ(cameras[0].intrinsicsPath, "row.yml");
  EXPECT_EQ(cameras[0].model.intrinsic.matrix[2], 2);
}

TEST_F(DepthJob, TakesKnownIntrinsicsWhereTheJobHasNone) {
  CameraModel model;
  model.intrinsic.matrix[0] = 77;
  const IntrinsicsById known = {{"a", {"of-a.yml", model}}, {"b", {"of-b.yml", model}}};
  const std::vector<DepthJobCamera> cameras = read(json::array({fromFile, without}), known);
  EXPECT_EQ(cameras[0].model.intrinsic.matrix[0], 100);
  EXPECT_EQ(cameras[1].model.intrinsic.matrix[0], 77);
  EXPECT_EQ(cameras[1].intrinsicsPath, "of-b.yml");
  EXPECT_EQ(cameras[1].colorPath, "c.png");
  EXPECT_EQ(toolError([&] {
              read(json::array({fromFile, without}));
            }),
            "camera \"b\": key \"intrinsics\" is missing");
}

TEST_F(DepthJob, SaysWhatHasTooManyCameras) {
  EXPECT_EQ(toolError([&] { read(std::vector<json>(11, fromFile)); }),
            "a test has 1 to 10 cameras, not 11");
}

} // namespace
} // namespace velmorn::tool
