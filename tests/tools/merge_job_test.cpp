// Job files of merged clouds: defaults, places, frames and every refusal.
#include "velmorn/merge_job.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/merge_builder.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

const cv::Matx44d kBaseFromA(0, -1, 0, 5, 1, 0, 0, 6, 0, 0, 1, 7, 0, 0, 0, 1);

class MergeJobFile : public TempDirTest {
 protected:
  MergeJobFile() { writeTwoCameraMergeFiles(dir()); }

  MergeJob read(const json& job) {
    writeFile("job.json", job.dump());
    return readMergeJob("job.json");
  }

  MergeJob readWith(const std::string& key, const json& value) {
    json job = twoCameraMergeJob();
    job[key] = value;
    return read(job);
  }

  // The message for the two-camera job after a change; the file's name is checked and cut off.
  std::string refusal(const std::function<void(json&)>& change) {
    json job = twoCameraMergeJob();
    change(job);
    const std::string message = toolError([&] { read(job); });
    EXPECT_THAT(message, StartsWith("job.json: "));
    return message.substr(message.find(": ") + 2);
  }

  // planeFromCam: half a turn about x, then 100 up.
  void writePlane(const std::string& name = "plane.json") {
    const json rows = {{1, 0, 0, 0}, {0, -1, 0, 0}, {0, 0, -1, 100}, {0, 0, 0, 1}};
    writeFile(name, json{{"direction", "planeFromCam"}, {"extrinsic", rows}}.dump());
  }

  const cv::Matx44d planeFromCam{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 100, 0, 0, 0, 1};
};

TEST_F(MergeJobFile, Defaults) {
  const MergeJob job = read(twoCameraMergeJob());
  EXPECT_EQ(job.depthUnit, 1);
  EXPECT_EQ(job.range.nearest, 0);
  EXPECT_TRUE(std::isinf(job.range.farthest));
  EXPECT_FALSE(job.voxel);
  EXPECT_EQ(job.frameName, "base");
  EXPECT_EQ(job.frameFromBase, cv::Matx44d::eye());
  ASSERT_EQ(job.cameras.size(), 2U);
  EXPECT_EQ(job.cameras[0].id, "a");
  EXPECT_EQ(job.cameras[0].baseFromCam, kBaseFromA);
}

TEST_F(MergeJobFile, ReadsWhatItSays) {
  json job = twoCameraMergeJob();
  job["depth_unit"] = 0.25;
  job["range"] = {10, 20.5};
  job["voxel"] = 3;
  job["frame"] = "base";
  const MergeJob merge = read(job);
  EXPECT_EQ(merge.depthUnit, 0.25);
  EXPECT_EQ(merge.range.nearest, 10);
  EXPECT_EQ(merge.range.farthest, 20.5);
  EXPECT_EQ(merge.voxel, 3);
}

TEST_F(MergeJobFile, IntrinsicsFromTheResultFile) {
  json job = twoCameraMergeJob();
  job["cameras"][1].erase("intrinsics");
  const MergeJob merge = read(job);
  EXPECT_EQ(merge.cameras[1].model.intrinsic.matrix[0], 100);
  EXPECT_EQ(merge.cameras[1].model.imageSize, cv::Size(5, 1));
  EXPECT_EQ(merge.cameras[1].intrinsicsPath, "row.yml");
  EXPECT_EQ(refusal([](json& j) { j["cameras"][0].erase("intrinsics"); }),
            "camera \"a\": key \"intrinsics\" is missing");
}

TEST_F(MergeJobFile, TakesAFolderPerCamera) {
  json result = json::parse(readFile(dir() / "result.json"));
  const json intrinsics = result["cameras"][0]["intrinsics"];
  for (json& camera : result["cameras"]) camera["intrinsics"] = intrinsics;
  writeFile("result.json", result.dump());
  for (const char* file :
       {"b/depth.tif", "b/depth.txt", "a/depth.png", "a/color.jpg", "c/notes.txt"}) {
    std::filesystem::create_directories((dir() / "rig" / file).parent_path());
    writeFile(dir() / "rig" / file, "");
  }
  const MergeJob job = readMergeFolder("rig", "result.json");
  ASSERT_EQ(job.cameras.size(), 2U);
  EXPECT_EQ(job.cameras[0].id, "a");
  EXPECT_EQ(job.cameras[0].depthPath, "rig/a/depth.png");
  EXPECT_EQ(job.cameras[0].colorPath, "rig/a/color.jpg");
  EXPECT_EQ(job.cameras[0].baseFromCam, kBaseFromA);
  EXPECT_EQ(job.cameras[1].depthPath, "rig/b/depth.tif");
  EXPECT_EQ(job.cameras[1].colorPath, "");
  EXPECT_EQ(job.depthUnit, 1);
}

TEST_F(MergeJobFile, SaysWhatAFolderLacks) {
  EXPECT_THAT(toolError([] { readMergeFolder("none", "result.json"); }), StartsWith("none: "));
  std::filesystem::create_directories(dir() / "rig/z");
  EXPECT_EQ(toolError([] { readMergeFolder("rig", "result.json"); }),
            "rig: no folder with a depth.png in it");
  writeFile(dir() / "rig/z/depth.png", "");
  EXPECT_EQ(toolError([] { readMergeFolder("rig", "none.json"); }), "rig: no such file: none.json");
  EXPECT_THAT(toolError([] { readMergeFolder("rig", "result.json"); }),
              StartsWith("rig: camera \"z\""));
}

TEST_F(MergeJobFile, OneCameraNeedsNoResult) {
  json job = twoCameraMergeJob();
  job["cameras"].erase(1);
  EXPECT_EQ(read(job).cameras[0].baseFromCam, kBaseFromA);
  job.erase("result");
  EXPECT_EQ(read(job).cameras[0].baseFromCam, cv::Matx44d::eye());
  job["frame"] = "plane.json";
  job["frame_camera"] = "a";
  writePlane();
  EXPECT_EQ(read(job).frameFromBase, planeFromCam);
  job["frame_camera"] = "b";
  EXPECT_EQ(toolError([&] { read(job); }),
            "job.json: \"frame_camera\" is \"b\", which no \"result\" places");
}

TEST_F(MergeJobFile, FrameOfTheBaseAndOfAnotherCamera) {
  writePlane();
  json job = twoCameraMergeJob();
  job["frame"] = "plane.json";
  EXPECT_EQ(read(job).frameName, "plane");
  EXPECT_EQ(read(job).frameFromBase, planeFromCam);
  job["frame_camera"] = "a";
  EXPECT_LT(cv::norm(read(job).frameFromBase, planeFromCam * kBaseFromA.inv()), 1e-12);
}

TEST_F(MergeJobFile, TakesPathsRelativeToTheFile) {
  std::filesystem::create_directory("sub");
  writeTwoCameraMergeFiles("sub");
  for (const char* name : {"row.yml", "result.json"}) std::filesystem::remove(name);
  writePlane("sub/plane.json");
  json job = twoCameraMergeJob();
  job["frame"] = "plane.json";
  job["cameras"][0]["color"] = "c.png";
  job["cameras"][1].erase("intrinsics");
  writeFile("sub/job.json", job.dump());
  const MergeJob read = readMergeJob("sub/job.json");
  EXPECT_EQ(read.cameras[0].depthPath, "sub/a.png");
  EXPECT_EQ(read.cameras[0].colorPath, "sub/c.png");
  EXPECT_EQ(read.cameras[1].intrinsicsPath, "sub/row.yml");
}

TEST_F(MergeJobFile, RefusesBadNumbers) {
  for (const char* key : {"depth_unit", "voxel"}) {
    for (const json& length : {json(0), json(-1), json(1e300)}) {
      EXPECT_EQ(refusal([&](json& j) { j[key] = length; }),
                std::string("\"") + key + "\" has to be a length above 0");
    }
    EXPECT_EQ(refusal([&](json& j) { j[key] = "2"; }),
              std::string("\"") + key + "\" has to be a number");
  }
  for (const json& range : {json({1}), json({1, 2, 3}), json({1, "2"}), json(5)}) {
    EXPECT_EQ(refusal([&](json& j) { j["range"] = range; }),
              "\"range\" has to be a list of 2 numbers");
  }
  for (const json& range : {json({-1, 2}), json({2, 2}), json({3, 2})}) {
    EXPECT_THAT(refusal([&](json& j) { j["range"] = range; }), StartsWith("\"range\" is the nea"));
  }
}

TEST_F(MergeJobFile, RefusesUnknownAndMissingKeys) {
  EXPECT_THAT(refusal([](json& j) { j["region"] = 1; }),
              StartsWith("unknown key \"region\" (known: result, "));
  EXPECT_THAT(refusal([](json& j) { j["cameras"][0]["colour"] = "c.png"; }),
              StartsWith("camera 1: unknown key \"colour\""));
  for (const char* key : {"result", "cameras"}) {
    EXPECT_EQ(refusal([&](json& j) { j.erase(key); }),
              std::string("key \"") + key + "\" is missing");
  }
  EXPECT_EQ(refusal([](json& j) { j["cameras"] = json::array(); }),
            "a merged cloud has 1 to 10 cameras, not 0");
  writeFile("job.json", "{\"cameras\": [");
  EXPECT_THAT(toolError([] { readMergeJob("job.json"); }),
              StartsWith("job.json: not valid JSON: "));
}

TEST_F(MergeJobFile, RefusesCamerasWithoutAPlace) {
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1]["id"] = "c"; }),
            "camera \"c\" has no place in result.json");
  EXPECT_EQ(refusal([](json& j) { j["result"] = "gone.json"; }), "no such file: gone.json");
  setBaseFromCam("result.json", 0, nullptr); // as after a run that did not link it
  EXPECT_EQ(refusal([](json&) {}), "camera \"b\" has no place in result.json");
  setBaseFromCam("result.json", 0, {{1, 0, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
  EXPECT_THAT(refusal([](json&) {}),
              StartsWith("result.json: camera \"b\": \"baseFromCam\" is no rigid transform"));
}

TEST_F(MergeJobFile, RefusesFrames) {
  writePlane();
  EXPECT_EQ(refusal([](json& j) { j["frame_camera"] = "a"; }),
            "\"frame_camera\" belongs to a \"frame\" from a file");
  EXPECT_EQ(refusal([](json& j) { j["frame"] = "gone.json"; }), "no such file: gone.json");
  const auto ofCameraC = [](json& j) {
    j["frame"] = "plane.json";
    j["frame_camera"] = "c";
  };
  EXPECT_EQ(refusal(ofCameraC), "camera \"c\" has no place in result.json");
  const auto ofPlane = [](json& j) { j["frame"] = "plane.json"; };
  const json rows = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}};
  writeFile("plane.json", json{{"direction", "planeFromCam"}, {"extrinsic", rows}}.dump());
  EXPECT_EQ(refusal(ofPlane),
            "plane.json: the extrinsic is no rigid transform, the cloud would be distorted");
  writeFile("plane.json", json{{"direction", "camFromPlane"}, {"extrinsic", rows}}.dump());
  EXPECT_THAT(refusal(ofPlane), HasSubstr("plane.json: \"direction\" is camFromPlane"));
}

} // namespace
} // namespace velmorn::tool
