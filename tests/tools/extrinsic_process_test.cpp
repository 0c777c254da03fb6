// `velmorn platform` and `velmorn extrinsic`, run as processes.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/board_renderer.h"
#include "support/matchers.h"
#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/process.h"
#include "tools/rig_builder.h"
#include "velmorn/extrinsic_file.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kPlane =
    R"({"direction": "planeFromCam", "extrinsic": [-1,0,0,0, 0,1,0,0, 0,0,-1,500, 0,0,0,1]})";

class ExtrinsicProcess : public TempDirTest {
 protected:
  ExtrinsicProcess() {
    writeFile(dir() / "plane.json", kPlane);
    writeFile(dir() / "cam.yml",
              cameraYaml("0., 0., 0., 0., 0.", "500., 0., 320., 0., 500., 240., 0., 0., 1."));
  }
  ProcessResult run(const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_TOOL, arguments, dir());
  }
  // `velmorn extrinsic TASK plane.json ARGUMENTS...`
  ProcessResult edit(const std::string& task, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"extrinsic", task, "plane.json"});
    return run(arguments);
  }
  json edited(const std::string& task, const std::vector<std::string>& arguments) {
    const ProcessResult result = edit(task, arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return json::parse(result.out);
  }
};

TEST_F(ExtrinsicProcess, PlatformFindsARenderedBoard) {
  BoardSpec board;
  board.square = 20;
  velmorn::CameraModel camera;
  camera.matrix = {500, 0, 320, 0, 500, 240, 0, 0, 1};
  cv::Matx33d R;
  cv::Rodrigues(cv::Vec3d(0.2, -0.25, 0.05), R);
  const cv::Matx44d camFromBoard = transformOf(R, {-80, -50, 250});
  cv::imwrite((dir() / "top.png").string(), BoardRenderer(camera).render(board, camFromBoard));
  std::vector<std::string> arguments = {"platform", "top.png", "--intrinsics",
                                        "cam.yml",  "--board", "9x6",
                                        "--square", "20",      "--keep-board-axes"};
  const ProcessResult result = run(arguments);
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, StartsWith("camera at      "));
  const NamedExtrinsic found = readExtrinsicFile((dir() / "platform.json").string());
  EXPECT_EQ(found.direction, "platformFromCam");
  EXPECT_THAT(transformOf(found.extrinsic), extrinsicNear(inverseOf(camFromBoard), 0.05, 0.25));

  arguments.pop_back();
  arguments.insert(arguments.end(), {"--offset", "-10,20,30", "-o", "turned.json"});
  ASSERT_EQ(run(arguments).status, 0);
  cv::Matx44d expected = cv::Matx44d::diag({1, -1, -1, 1}) * transformOf(found.extrinsic);
  for (int row = 0; row < 3; ++row) expected(row, 3) += cv::Vec3d(-10, 20, 30)[row];
  const NamedExtrinsic turned = readExtrinsicFile((dir() / "turned.json").string());
  EXPECT_THAT(transformOf(turned.extrinsic), extrinsicNear(expected, 1e-6, 1e-6));
}

TEST_F(ExtrinsicProcess, PlatformKeepsAGoodFile) {
  cv::imwrite((dir() / "grey.png").string(), cv::Mat(480, 640, CV_8UC1, cv::Scalar(128)));
  writeFile(dir() / "platform.json", "as it was");
  const ProcessResult result =
      run({"platform", "grey.png", "--intrinsics", "cam.yml", "--board", "9x6", "--square", "20"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "velmorn: grey.png: no board with 9x6 inner corners found\n");
  EXPECT_EQ(readFile(dir() / "platform.json"), "as it was");
}

TEST_F(ExtrinsicProcess, PrintsTheChangedExtrinsic) {
  EXPECT_EQ(edited("nudge", {"--step", "-5", "--mode", "3"})["extrinsic"][0][3], 5);
  EXPECT_EQ(edited("x-axis", {"--axis", "0,1,0"})["extrinsic"][0], json({0, 1, 0, 0}));
  EXPECT_NEAR(edited("turn", {"--angle", "90"})["extrinsic"][0][1], 1, 1e-5);
  EXPECT_NEAR(edited("turn", {"--angle", "90", "--back"})["extrinsic"][0][1], -1, 1e-5);
  EXPECT_EQ(edited("plane-model", {})["plane"],
            json({{"coefficients", {0, 0, -1, 500}}, {"point", {0, 0, 500}}}));
  const json conveyor = edited("conveyor", {"--intrinsics", "cam.yml", "--from", "220,240", "--to",
                                            "420,240", "--direction", "1"});
  EXPECT_EQ(conveyor["direction"], "conveyorFromCam");
  EXPECT_NEAR(conveyor["extrinsic"][0][3], 100, 1e-3);
}

TEST_F(ExtrinsicProcess, WritesAFileWhenAsked) {
  const ProcessResult result = edit("nudge", {"--step", "5", "--mode", "4", "-o", "plane.json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  const NamedExtrinsic found = readExtrinsicFile((dir() / "plane.json").string());
  EXPECT_EQ(found.direction, "planeFromCam");
  EXPECT_EQ(found.extrinsic.data[3], 5);
}

TEST_F(ExtrinsicProcess, WarnsOfAResultThatIsNotRigid) {
  const ProcessResult result = edit("x-axis", {"--axis", "1,0,1"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, StartsWith("velmorn: warning: the new x axis is not within the plane"));
  edited("x-axis", {"--axis", "1,0,1", "--into-plane"});
}

// The library prints a line for this pixel; only the tool's own may be seen.
TEST_F(ExtrinsicProcess, NamesTheFileInAFailure) {
  const std::string floor = with(kPlane, "0,1,0,0, 0,0,-1,500", "0,0,1,0, 0,1,0,100");
  writeFile(dir() / "plane.json", floor);
  const ProcessResult sky = edit("conveyor", {"--intrinsics", "cam.yml", "--from", "220,240",
                                              "--to", "420,100", "--direction", "0"});
  EXPECT_EQ(sky.status, 1);
  EXPECT_EQ(sky.out, "");
  EXPECT_EQ(sky.err, "velmorn: plane.json: pixel 220,240 does not see the plane\n");
  const ProcessResult axis = edit("x-axis", {"--axis", "0,1,0", "-o", "plane.json"});
  EXPECT_EQ(axis.err, "velmorn: plane.json: the new x axis is parallel to the plane's normal\n");
  EXPECT_EQ(readFile(dir() / "plane.json"), floor);
}

TEST_F(ExtrinsicProcess, TellsWrongUsage) {
  const std::vector<std::vector<std::string>> wrong = {
      {"extrinsic"},
      {"extrinsic", "plane.json"},
      {"extrinsic", "x-axis", "plane.json"},
      {"extrinsic", "x-axis", "plane.json", "--axis", "1,0"},
      {"extrinsic", "x-axis", "gone.json", "--axis", "1,0,0"},
      {"extrinsic", "nudge", "plane.json", "--step", "1", "--mode", "5"},
      {"extrinsic", "nudge", "plane.json", "--step", "far", "--mode", "1"},
      {"extrinsic", "turn", "plane.json", "--angle", "nan"},
      {"extrinsic", "conveyor", "plane.json", "--from", "1,2", "--to", "3,4", "--direction", "0"},
      {"extrinsic", "plane-model", "plane.json", "plane-model", "plane.json"},
      {"platform", "plane.json", "--board", "9x6", "--square", "20"},
      {"platform", "plane.json", "--intrinsics", "cam.yml", "--board", "9x6", "--square", "20",
       "--offset", "1,2"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
}

TEST_F(ExtrinsicProcess, HelpsWithExamples) {
  for (const char* command : {"plane", "platform", "extrinsic"}) {
    const ProcessResult help = run({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr(std::string("Example:\n  velmorn ") + command));
  }
  for (const char* task : {"x-axis", "nudge", "turn", "plane-model", "conveyor"}) {
    const ProcessResult help = run({"extrinsic", task, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr(std::string("Example:\n  velmorn extrinsic ") + task));
  }
}

} // namespace
} // namespace velmorn::tool
