// `velmorn plane`, run as a process.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/process.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class PlaneProcess : public TempDirTest {
 protected:
  ProcessResult run(const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_TOOL, arguments, dir());
  }
  // The run has to fail with the message and leave the output file alone.
  void expectFailure(const std::vector<std::string>& arguments, const std::string& message) {
    writeFile(dir() / "plane.json", "as it was");
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("velmorn: " + message));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    EXPECT_EQ(readFile(dir() / "plane.json"), "as it was");
  }
  void expectWrongUsage(const std::vector<std::string>& arguments, const std::string& message) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(message));
  }
};

TEST_F(PlaneProcess, WritesThePlaneOfEveryFormat) {
  const Points points = gridOnPlane(30);
  const std::vector<std::pair<std::string, std::string>> files = {
      {"a.xyz", xyzText(points)},
      {"a.ply", plyText(points, PlyForm::kText)},
      {"b.ply", plyText(points, PlyForm::kLittleEndian)},
      {"a.pcd", pcdText(points, PcdForm::kText)},
      {"b.pcd", pcdText(points, PcdForm::kBinary)},
      {"c.pcd", pcdText(points, PcdForm::kCompressed)}};
  for (const auto& [name, content] : files) {
    writeFile(dir() / name, content);
    const ProcessResult result = run({"plane", name, "--threshold", "1"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("points         330 used, 0 skipped\n"
                                       "inliers        90.91 %\n"));
    const json written = json::parse(readFile(dir() / "plane.json"));
    EXPECT_EQ(written["direction"], "planeFromCam");
    EXPECT_EQ(written["input"], name);
    EXPECT_EQ(written["pointsUsed"], 330);
    EXPECT_EQ(written["inliers"], 300);
    EXPECT_NEAR(written["inlierRatio"], 300 / 330.0, 1e-12);
    EXPECT_NEAR(written["plane"]["coefficients"][2], -1 / std::sqrt(1.05), 1e-4);
    EXPECT_NEAR(written["plane"]["coefficients"][3], 500, 1e-2);
    EXPECT_EQ(written["plane"]["coefficients"][0], written["extrinsic"][2][0]);
    EXPECT_NEAR(written["meanDistance"], 50 / std::sqrt(1.05) / 11, 5e-3);
  }
}

TEST_F(PlaneProcess, CountsWhatItSkips) {
  writeFile(dir() / "a.xyz", xyzText(gridOnPlane()) + "nan 0 1\n0 inf 1\n");
  const ProcessResult result = run({"plane", "a.xyz", "--threshold", "1", "-o", "p.json"});
  EXPECT_THAT(result.out, StartsWith("points         300 used, 2 skipped\n"));
  EXPECT_EQ(json::parse(readFile(dir() / "p.json"))["pointsSkipped"], 2);
}

TEST_F(PlaneProcess, TakesADepthImage) {
  cv::Mat depth(480, 640, CV_16UC1, cv::Scalar(0));
  depth(cv::Rect(270, 200, 100, 80)) = 5000;
  depth(cv::Rect(270, 200, 20, 10)) = 4000;
  cv::imwrite((dir() / "d.png").string(), depth);
  writeFile(dir() / "cam.yml", cameraYaml("0., 0., 0., 0., 0."));
  const std::vector<std::string> arguments = {"plane",       "d.png", "--intrinsics",  "cam.yml",
                                              "--threshold", "1",     "--depth-scale", "0.1"};
  const ProcessResult result = run(arguments);
  ASSERT_EQ(result.status, 0) << result.err;
  const json written = json::parse(readFile(dir() / "plane.json"));
  EXPECT_EQ(written["pointsUsed"], 8000);
  EXPECT_EQ(written["pointsSkipped"], 640 * 480 - 8000);
  EXPECT_EQ(written["inliers"], 7800);
  EXPECT_NEAR(written["plane"]["coefficients"][3], 500, 0.1);
  writeFile(dir() / "cam.yml", with(cameraYaml(), "width: 640", "width: 800"));
  EXPECT_THAT(run(arguments).err, HasSubstr("warning: the image is 640x480, but cam.yml is for"));
}

TEST_F(PlaneProcess, SaysWhyThereIsNoPlane) {
  writeFile(dir() / "empty.xyz", "");
  expectFailure({"plane", "empty.xyz", "--threshold", "1"}, "empty.xyz: no points\n");
  writeFile(dir() / "two.xyz", "0 0 1\nnan 0 1\n1 0 1\n");
  expectFailure({"plane", "two.xyz", "--threshold", "1"},
                "two.xyz: 2 usable points of 3, a plane needs 3\n");
  writeFile(dir() / "one.pcd", pcdText(Points(9, {1, 2, 3}), PcdForm::kBinary));
  expectFailure({"plane", "one.pcd", "--threshold", "1"}, "one.pcd: no plane found: ");
  writeFile(dir() / "bad.ply", with(plyText(gridOnPlane(), PlyForm::kLittleEndian), "vertex 300",
                                    "vertex 2000000000"));
  expectFailure({"plane", "bad.ply", "--threshold", "1"}, "bad.ply: cut off: ");
  cv::imwrite((dir() / "grey.png").string(), cv::Mat(9, 9, CV_8UC1, cv::Scalar(1)));
  writeFile(dir() / "cam.yml", cameraYaml());
  expectFailure({"plane", "grey.png", "--threshold", "1", "--intrinsics", "cam.yml"},
                "grey.png: not a depth image");
  expectFailure({"plane", "two.xyz", "--threshold", "1", "-o", "no/where.json"},
                "cannot write no/where.json");
}

TEST_F(PlaneProcess, TellsWrongUsage) {
  writeFile(dir() / "a.xyz", xyzText(gridOnPlane()));
  writeFile(dir() / "a.obj", "");
  writeFile(dir() / "d.png", "");
  writeFile(dir() / "cam.yml", cameraYaml());
  expectWrongUsage({"plane"}, "input is required");
  expectWrongUsage({"plane", "a.xyz"}, "--threshold is required");
  expectWrongUsage({"plane", "gone.xyz", "--threshold", "1"}, "gone.xyz");
  expectWrongUsage({"plane", "a.obj", "--threshold", "1"}, "has to be a .ply, .pcd, .xyz");
  expectWrongUsage({"plane", "d.png", "--threshold", "1"}, "required for a depth image");
  for (const char* threshold : {"0", "-1", "nan", "inf", "1e99", "wide"}) {
    expectWrongUsage({"plane", "a.xyz", "--threshold", threshold}, "--threshold");
  }
  expectWrongUsage({"plane", "a.xyz", "--threshold", "1", "--intrinsics", "cam.yml"},
                   "for a depth image only");
  expectWrongUsage({"plane", "a.xyz", "--threshold", "1", "--depth-scale", "2"},
                   "for a depth image only");
}

} // namespace
} // namespace velmorn::tool
