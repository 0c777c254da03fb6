// Reading back what a run wrote, and files that no run wrote.
#include "velmorn/stitch_record.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/stitched_sample.h"
#include "velmorn/result_file.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

Rig twoByTwoRig() {
  Rig rig;
  rig.board = {2, 2};
  rig.square = 25;
  rig.minImages = 3;
  for (const char* id : {"left", "right"}) {
    RigCamera camera;
    camera.id = id;
    camera.intrinsicsPath = std::string("cams/") + id + ".yml";
    camera.model.intrinsic = {500, 0, 320, 0, 510, 240, 0, 0, 1};
    camera.model.distortion.coeffs[0] = -0.25;
    camera.model.imageSize = {640, 480};
    rig.cameras.push_back(camera);
  }
  return rig;
}

ShotRecord foundShot() {
  ShotRecord shot;
  shot.image = "shots/one.png";
  shot.outcome = "found";
  shot.reprojectionError = 0.125;
  shot.camFromBoard = cv::Matx44d(0, -1, 0, 3, 1, 0, 0, 4, 0, 0, 1, 12, 0, 0, 0, 1);
  shot.corners = {{1.5, 2}, {3, 4.25}, {5, 6}, {7, 8.00004}};
  return shot;
}

StitchedRig sample() {
  StitchedRig stitched = stitchedSample();
  CameraShots& left = stitched.shots["left"];
  left.imageSize = {640, 480};
  left.shots = {foundShot(), ShotRecord()};
  left.shots[1].image = "shots/two.png";
  left.shots[1].outcome = "not-loaded";
  left.shots[1].detail = "why";
  stitched.shots["right"].shots = {left.shots[1], left.shots[1]};
  return stitched;
}

class StitchRecordTest : public TempDirTest {
 protected:
  StitchRecord readBack(const std::string& path, const std::string& error = "") {
    std::filesystem::create_directories(std::filesystem::path(dir() / path).parent_path());
    writeFile(path, resultText(twoByTwoRig(), sample(), path, error));
    return readStitchRecord(path);
  }

  // The message for the sample after a change.
  template <typename Change>
  std::string refusal(Change change) {
    json file = json::parse(resultText(twoByTwoRig(), sample()));
    change(file);
    writeFile("bad.json", file.dump());
    const std::string message = toolError([] { readStitchRecord("bad.json"); });
    EXPECT_THAT(message, StartsWith("bad.json: "));
    return message;
  }
};

TEST_F(StitchRecordTest, GivesBackWhatTheRunSaw) {
  const StitchRecord run = readBack("result.json");
  EXPECT_FALSE(run.hasDataCodes);
  EXPECT_EQ(run.board, cv::Size(2, 2));
  EXPECT_EQ(run.square, 25);
  EXPECT_EQ(run.minImages, 3);
  EXPECT_EQ(run.base, "left");
  EXPECT_EQ(run.error, "");
  ASSERT_EQ(run.cameras.size(), 2U);
  const CameraRecord& left = run.cameras[0];
  EXPECT_TRUE(left.isBase);
  EXPECT_EQ(left.parent, "");
  EXPECT_EQ(left.imageSize, cv::Size(640, 480));
  EXPECT_EQ(left.intrinsics->file, "cams/left.yml");
  EXPECT_EQ(left.intrinsics->model.intrinsic.matrix[4], 510);
  EXPECT_EQ(left.intrinsics->model.distortion.coeffs[0], -0.25);
  EXPECT_EQ(run.cameras[1].parent, "left");
  EXPECT_EQ(run.cameras[1].residual, 0.25);
  EXPECT_EQ(run.cameras[1].baseFromCam->operator()(0, 3), 3);
  EXPECT_EQ(run.cameras[1].imageSize, cv::Size());
}

TEST_F(StitchRecordTest, GivesBackTheShots) {
  const CameraRecord left = readBack("result.json").cameras[0];
  ASSERT_EQ(left.shots.size(), 2U);
  const ShotRecord& found = left.shots[0];
  EXPECT_TRUE(found.found());
  EXPECT_EQ(found.image, "shots/one.png");
  EXPECT_EQ(found.reprojectionError, 0.125);
  EXPECT_EQ(cv::norm(found.camFromBoard - foundShot().camFromBoard), 0);
  EXPECT_EQ(found.corners[1], cv::Point2d(3, 4.25));
  EXPECT_EQ(found.corners[3], cv::Point2d(7, 8)); // four places are kept
  EXPECT_FALSE(left.shots[1].found());
  EXPECT_EQ(left.shots[1].outcome, "not-loaded");
  EXPECT_EQ(left.shots[1].detail, "why");
}

TEST_F(StitchRecordTest, PathsAreRelativeToTheFile) {
  const std::string text = resultText(twoByTwoRig(), sample(), "out/result.json");
  EXPECT_THAT(text, HasSubstr("\"../shots/one.png\""));
  const StitchRecord run = readBack("out/result.json");
  EXPECT_EQ(run.folder, "out");
  EXPECT_EQ(std::filesystem::path(run.cameras[0].shots[0].image).lexically_normal(),
            "shots/one.png");
}

TEST_F(StitchRecordTest, KeepsWhatAFailedRunFound) {
  StitchedRig stitched = sample();
  for (StitchedCamera& camera : stitched.cameras) camera.isLinked = false;
  writeFile("f.json", resultText(twoByTwoRig(), stitched, "f.json", "no link"));
  const StitchRecord run = readStitchRecord("f.json");
  EXPECT_EQ(run.error, "no link");
  EXPECT_EQ(run.base, "");
  EXPECT_FALSE(run.cameras[1].baseFromCam);
  EXPECT_FALSE(run.cameras[1].residual);
  EXPECT_EQ(run.cameras[1].parent, "");
  EXPECT_EQ(run.cameras[0].shots.size(), 2U);
  EXPECT_THAT(toolError([] { readBaseFromCam("f.json"); }),
              "f.json: camera \"left\" has no place, the run failed");
}

TEST_F(StitchRecordTest, KeepsTheGridOfADataCodeBoard) {
  Rig rig = twoByTwoRig();
  rig.hasDataCodes = true;
  StitchedRig stitched = sample();
  stitched.square = 20;
  stitched.shots["left"].shots[0].grid = {{3, 4}, {4, 4}, {3, 5}, {-4, 5}};
  writeFile("d.json", resultText(rig, stitched, "d.json"));
  const StitchRecord run = readStitchRecord("d.json");
  EXPECT_TRUE(run.hasDataCodes);
  EXPECT_EQ(run.square, 20);
  EXPECT_EQ(run.minImages, 1);
  EXPECT_EQ(run.cameras[0].shots[0].grid[3], cv::Point(-4, 5));
}

TEST_F(StitchRecordTest, TakesAFileWithoutShots) {
  json file = json::parse(resultText(twoByTwoRig(), sample()));
  for (json& camera : file["cameras"])
    for (const char* key : {"shots", "intrinsics", "imageSize"}) camera.erase(key);
  writeFile("old.json", file.dump());
  const StitchRecord run = readStitchRecord("old.json");
  EXPECT_TRUE(run.cameras[0].shots.empty());
  EXPECT_FALSE(run.cameras[0].intrinsics);
}

TEST_F(StitchRecordTest, RefusesWhatNoRunWrote) {
  EXPECT_THAT(refusal([](json& f) { f["cameras"] = json::array(); }), HasSubstr("1 to 10"));
  EXPECT_THAT(refusal([](json& f) { f.erase("board"); }), HasSubstr("board"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][1]["baseFromCam"][0][0] = 2; }),
              HasSubstr("camera \"right\": \"baseFromCam\" is no rigid transform"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][0]["shots"][0]["corners"].erase(0); }),
              HasSubstr("odd number"));
  EXPECT_THAT(refusal([](json& f) {
                f["cameras"][0]["shots"][0]["corners"] = {1, 2};
              }),
              HasSubstr("1 corners for 4 places"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][0]["shots"][0]["corners"][0] = 1e300; }),
              HasSubstr("out of range"));
  EXPECT_THAT(refusal([](json& f) {
                f["cameras"][0]["imageSize"] = {0, 480};
              }),
              HasSubstr("\"imageSize\" is out of range"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][0]["intrinsics"]["matrix"][0][0] = -1; }),
              HasSubstr("above 0"));
  EXPECT_THAT(refusal([](json& f) { f["board"]["rows"] = 1001; }),
              HasSubstr("\"rows\" is out of range"));
  EXPECT_THAT(refusal([](json& f) { f["board"]["square"] = -1; }), HasSubstr("below 0"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][1]["parent"] = "nobody"; }),
              HasSubstr("does not lead to the base"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][0]["parent"] = "right"; }),
              HasSubstr("does not lead to the base"));
  EXPECT_THAT(refusal([](json& f) { f["cameras"][0]["imagesFound"] = -1; }),
              HasSubstr("out of range"));
}

TEST_F(StitchRecordTest, NamesAFileThatIsNoResult) {
  for (const char* text : {"", "{}", "[]", "3", "{\"cameras\": 1, \"board\": \"data-code\"}"}) {
    writeFile("bad.json", text);
    EXPECT_THAT(toolError([] { readStitchRecord("bad.json"); }), StartsWith("bad.json: ")) << text;
  }
}

} // namespace
} // namespace velmorn::tool
