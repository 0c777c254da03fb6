// Job files of aerial views: defaults, placing of the cameras and every refusal.
#include "velmorn/aerial_job.h"

#include <gmock/gmock.h>

#include <functional>

#include "support/temp_dir.h"
#include "tools/aerial_builder.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class AerialJobFile : public TempDirTest {
 protected:
  AerialJobFile() { writeTwoCameraJobFiles(dir()); }

  AerialJob read(const json& job) {
    writeFile("job.json", job.dump());
    return readAerialJob("job.json");
  }

  // The message for the two-camera job after a change; the file's name is checked and cut off.
  std::string refusal(const std::function<void(json&)>& change) {
    json job = twoCameraJob();
    change(job);
    const std::string message = toolError([&] { read(job); });
    EXPECT_THAT(message, StartsWith("job.json: "));
    return message.substr(message.find(": ") + 2);
  }
};

TEST_F(AerialJobFile, ReadsWhatItSays) {
  const AerialJob job = read(twoCameraJob());
  EXPECT_EQ(job.region, cv::Vec4d(-1.5, -0.5, 1.5, 0.5));
  EXPECT_EQ(job.resolution, 1);
  EXPECT_EQ(job.depthUnit, 1);
  EXPECT_FALSE(job.hasColour());
  ASSERT_EQ(job.cameras.size(), 2U);
  EXPECT_EQ(job.cameras[1].id, "b");
  EXPECT_EQ(job.cameras[1].depthPath, "b.png");
  EXPECT_EQ(job.cameras[1].model.intrinsic.matrix[0], 100);
}

TEST_F(AerialJobFile, PlacesTheCamerasInTheFirstOnesFrame) {
  json job = twoCameraJob();
  const cv::Matx44d aFromB(1, 0, 0, 1.2, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
  EXPECT_LT(cv::norm(read(job).cameras[0].firstFromCam, cv::Matx44d::eye()), 1e-12);
  EXPECT_LT(cv::norm(read(job).cameras[1].firstFromCam, aFromB), 1e-12);
  std::swap(job["cameras"][0], job["cameras"][1]);
  EXPECT_LT(cv::norm(read(job).cameras[1].firstFromCam, aFromB.inv()), 1e-12);
}

TEST_F(AerialJobFile, NeedsNoResultForOneCamera) {
  json job = twoCameraJob();
  job["cameras"].erase(1);
  job.erase("result");
  EXPECT_EQ(read(job).cameras[0].firstFromCam, cv::Matx44d::eye());
}

TEST_F(AerialJobFile, TakesPathsRelativeToTheFile) {
  std::filesystem::create_directory("sub");
  writeTwoCameraJobFiles("sub");
  for (const char* name : {"row.yml", "result.json"}) std::filesystem::remove(name);
  json job = twoCameraJob();
  for (json& camera : job["cameras"]) camera["color"] = "c.png";
  writeFile("sub/job.json", job.dump());
  const AerialJob read = readAerialJob("sub/job.json");
  EXPECT_EQ(read.cameras[0].depthPath, "sub/a.png");
  EXPECT_EQ(read.cameras[0].colorPath, "sub/c.png");
}

TEST_F(AerialJobFile, RefusesBadNumbers) {
  for (const json& region : {json({1, 2, 3}), json("1,2,3,4"), json({1, 2, 3, "4"}), json(1)}) {
    EXPECT_EQ(refusal([&](json& j) { j["region"] = region; }),
              "\"region\" has to be a list of 4 numbers");
  }
  for (const json& region : {json({2, 0, 1, 1}), json({0, 1, 1, 1}), json({0, 3, 1, 1})}) {
    EXPECT_THAT(refusal([&](json& j) { j["region"] = region; }), HasSubstr("x1 below x2"));
  }
  for (const json& length : {json(0), json(-1), json(1e300), json(1e-300)}) {
    EXPECT_EQ(refusal([&](json& j) { j["resolution"] = length; }),
              "\"resolution\" has to be a length above 0");
    EXPECT_EQ(refusal([&](json& j) { j["depth_unit"] = length; }),
              "\"depth_unit\" has to be a length above 0");
  }
  EXPECT_EQ(refusal([](json& j) { j["resolution"] = "2"; }), "\"resolution\" has to be a number");
}

TEST_F(AerialJobFile, RefusesNumbersThatJsonDoesNotHave) {
  for (const char* number : {"NaN", "nan", "Infinity", "1e999"}) {
    json job = twoCameraJob();
    std::string text = job.dump();
    text.replace(text.find("-1.5"), 4, number);
    writeFile("job.json", text);
    EXPECT_THAT(toolError([] { readAerialJob("job.json"); }),
                StartsWith("job.json: not valid JSON: "));
  }
}

TEST_F(AerialJobFile, RefusesUnknownAndMissingKeys) {
  EXPECT_THAT(refusal([](json& j) { j["depthUnit"] = 1; }),
              StartsWith("unknown key \"depthUnit\" (known: region, "));
  EXPECT_THAT(refusal([](json& j) { j["cameras"][0]["colour"] = "c.png"; }),
              StartsWith("camera 1: unknown key \"colour\""));
  for (const char* key : {"region", "resolution", "result", "cameras"}) {
    EXPECT_EQ(refusal([&](json& j) { j.erase(key); }),
              std::string("key \"") + key + "\" is missing");
  }
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1].erase("id"); }),
            "camera 2: key \"id\" is missing");
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1].erase("depth"); }),
            "camera \"b\": key \"depth\" is missing");
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1].erase("intrinsics"); }),
            "camera \"b\": key \"intrinsics\" is missing");
}

TEST_F(AerialJobFile, RefusesOtherCameras) {
  EXPECT_EQ(refusal([](json& j) { j["cameras"] = "a"; }), "\"cameras\" has to be a list");
  EXPECT_EQ(refusal([](json& j) { j["cameras"] = json::array(); }),
            "an aerial view has 1 to 10 cameras, not 0");
  EXPECT_EQ(refusal([](json& j) { j["cameras"] = std::vector<json>(11, j["cameras"][0]); }),
            "an aerial view has 1 to 10 cameras, not 11");
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1]["id"] = "a"; }), "two cameras have the id \"a\"");
  EXPECT_THAT(refusal([](json& j) { j["cameras"][1]["color"] = "c.png"; }),
              StartsWith("camera \"b\" has a \"color\", camera \"a\" has none"));
  EXPECT_THAT(refusal([](json& j) { j["cameras"][0]["color"] = "c.png"; }),
              StartsWith("camera \"b\" has no \"color\", camera \"a\" has one"));
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1]["intrinsics"] = "gone.yml"; }),
            "camera \"b\": no such file: gone.yml");
}

TEST_F(AerialJobFile, RefusesResultsThatDoNotPlaceTheCameras) {
  EXPECT_EQ(refusal([](json& j) { j["result"] = "gone.json"; }), "no such file: gone.json");
  EXPECT_EQ(refusal([](json& j) { j["cameras"][1]["id"] = "c"; }),
            "camera \"c\" is not in result.json");
  json result = json::parse(readFile("result.json"));
  result["cameras"][0]["baseFromCam"][1] = {1, 0, 0, 0}; // as in the library's base entry
  result["cameras"][0]["baseFromCam"][0] = {1, 0, 0, 0};
  writeFile("result.json", result.dump());
  EXPECT_EQ(refusal([](json&) {}),
            "result.json: \"baseFromCam\" of camera \"b\" is no rigid transform");
}

} // namespace
} // namespace velmorn::tool
