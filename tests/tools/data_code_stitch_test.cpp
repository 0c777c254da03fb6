// `velmorn stitch` with a data-code board, on rendered images and compared with their truth.
#include <gmock/gmock.h>

#include "support/matchers.h"
#include "support/temp_dir.h"
#include "tools/data_code_rig.h"
#include "tools/process.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr double kMaxDegrees = 0.01;
constexpr double kMaxPartOfDistance = 0.0005;

class DataCodeStitch : public TempDirTest {
 protected:
  ProcessResult stitch(const json& rig) {
    writeFile(dir() / "rig.json", rig.dump());
    return runProcess(VELMORN_TOOL, {"stitch", "rig.json"}, dir());
  }

  // Images with the board where the camera sees it in the shot, others without.
  void writeImages(const DataCodeRig& rig, const std::vector<std::vector<int>>& viewersOfShot) {
    for (int camera = 0; camera < rig.cameraCount(); ++camera) {
      rig.writeCameraFile(dir(), camera);
      for (int shot = 0; shot < static_cast<int>(viewersOfShot.size()); ++shot) {
        const std::vector<int>& viewers = viewersOfShot[static_cast<std::size_t>(shot)];
        if (std::find(viewers.begin(), viewers.end(), camera) != viewers.end()) {
          rig.writeImage(dir(), camera, shot);
        } else {
          rig.writeEmptyImage(dir(), camera, shot);
        }
      }
    }
  }

  json result() { return json::parse(readFile(dir() / "result.json")); }

  void expectTruth(const DataCodeRig& rig, int base) {
    const auto poses = readBaseFromCam((dir() / "result.json").string());
    for (int camera = 0; camera < rig.cameraCount(); ++camera) {
      const cv::Matx44d truth = rig.camFromCam(base, camera);
      EXPECT_THAT(
          poses.at(rig.id(camera)),
          extrinsicNear(truth, kMaxDegrees, kMaxPartOfDistance * translationLength(truth) + 1e-9))
          << rig.id(camera);
    }
  }
};

TEST_F(DataCodeStitch, PlacesFiveCamerasThatSeeNoSquareInCommon) {
  const DataCodeRig rig(5);
  writeImages(rig, {{0, 1, 2, 3, 4}, {0, 1, 2, 3, 4}});
  for (int camera = 1; camera < 5; ++camera)
    for (const int shot : {0, 1})
      EXPECT_LT(rig.columnsSeen(camera - 1, shot).end, rig.columnsSeen(camera, shot).start);

  const ProcessResult run = stitch(rig.rigFile());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, StartsWith("[ 1/10] cam0 cam0-0.png: board found, "));
  expectTruth(rig, 0);
  const json written = result();
  EXPECT_EQ(written["board"], "data-code");
  EXPECT_EQ(written["minCorners"], 12);
  EXPECT_EQ(written["base"], "cam0");
  const json& last = written["cameras"][4];
  EXPECT_EQ(last["parent"], "cam0");
  EXPECT_EQ(last["baseFromCam"], last["libraryEntry"]);
  EXPECT_EQ(last["imagesShared"], 2);
  EXPECT_GT(last["residual"], 0);
  EXPECT_LT(last["residual"], 0.2);
}

TEST_F(DataCodeStitch, PlacesACameraThroughAnother) {
  const DataCodeRig rig(3);
  writeImages(rig, {{0, 1}, {1, 2}});
  json file = rig.rigFile();
  file["base"] = "cam0";
  const ProcessResult run = stitch(file);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("cam0-1.png: no data code found\n"));
  expectTruth(rig, 0);
  const json last = result()["cameras"][2];
  EXPECT_EQ(last["parent"], "cam1");
  EXPECT_EQ(last["depth"], 2);
  EXPECT_EQ(last["baseFromCam"], last["libraryEntry"]);
  EXPECT_EQ(last["imagesShared"], 1);
  EXPECT_TRUE(last["residual"].is_null());
  EXPECT_THAT(run.out, HasSubstr("to cam1         -"));

  file["base"] = "auto";
  ASSERT_EQ(stitch(file).status, 0);
  EXPECT_EQ(result()["base"], "cam1");
  expectTruth(rig, 1);
}

TEST_F(DataCodeStitch, SaysWhichCamerasShareNoPosition) {
  const DataCodeRig rig(3);
  writeImages(rig, {{0, 1}, {2}});
  writeFile(dir() / "result.json", "as it was");
  const ProcessResult run = stitch(rig.rigFile());
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(lastLine(run.err),
              AllOf(StartsWith("velmorn: camera \"cam2\" could not be linked: "),
                    HasSubstr("board views shared with \"cam0\" 0, \"cam1\" 0, needed 1"),
                    HasSubstr("1 image of it gave no pose of the board (cam2-0.png)")));
  EXPECT_EQ(readFile(dir() / "result.json"), "as it was");
}

TEST_F(DataCodeStitch, LeavesImagesWithTooFewCornersOut) {
  const DataCodeRig rig(2, 1);
  writeImages(rig, {{0, 1}});
  json file = rig.rigFile();
  file["min_corners"] = 512;
  const ProcessResult run = stitch(file);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr(" corners found, fewer than 512\n"));
}

TEST_F(DataCodeStitch, GoesOnWithoutAnImageThatCannotBeRead) {
  const DataCodeRig rig(2);
  writeImages(rig, {{0, 1}, {0, 1}});
  writeFile(dir() / rig.imageName(1, 0), "no image");
  const ProcessResult run = stitch(rig.rigFile());
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("cam1-0.png: could not be loaded, ignored\n"));
  expectTruth(rig, 0);
}

} // namespace
} // namespace velmorn::tool
