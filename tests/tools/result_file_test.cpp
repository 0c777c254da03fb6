// Result files: content, and reading them back.
#include "velmorn/result_file.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/stitched_sample.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

Rig sampleRig() {
  Rig rig;
  rig.board = {9, 6};
  rig.square = 25;
  rig.minImages = 3;
  return rig;
}

json sampleResult() { return json::parse(resultText(sampleRig(), stitchedSample())); }

TEST(ResultFile, DescribesTheRun) {
  const json result = sampleResult();
  EXPECT_EQ(result["libraryVersion"], VELMORN64_VERSION);
  EXPECT_EQ(result["board"], json({{"columns", 9}, {"rows", 6}, {"square", 25}}));
  EXPECT_EQ(result["minImages"], 3);
  EXPECT_EQ(result["base"], "left");
  EXPECT_EQ(result["cameras"].size(), 2U);
}

TEST(ResultFile, GivesTheBaseTheIdentityAndShowsItsEntryAsItIs) {
  const json left = sampleResult()["cameras"][0];
  const json identity = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
  EXPECT_EQ(left["baseFromCam"], identity);
  EXPECT_EQ(left["camFromBase"], identity);
  EXPECT_EQ(left["libraryEntry"], json({{1, 0, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}));
  EXPECT_TRUE(left["isBase"]);
  EXPECT_TRUE(left["parent"].is_null());
  EXPECT_EQ(left["depth"], 0);
  EXPECT_EQ(left["residual"], 0);
}

TEST(ResultFile, GivesACameraInBothDirections) {
  const json right = sampleResult()["cameras"][1];
  EXPECT_EQ(right["baseFromCam"], json({{0, -1, 0, 3}, {1, 0, 0, 4}, {0, 0, 1, 12}, {0, 0, 0, 1}}));
  EXPECT_EQ(right["camFromBase"],
            json({{0, 1, 0, -4}, {-1, 0, 0, 3}, {0, 0, 1, -12}, {0, 0, 0, 1}}));
  EXPECT_FALSE(right["isBase"]);
  EXPECT_EQ(right["parent"], "left");
  EXPECT_EQ(right["depth"], 1);
  EXPECT_EQ(right["residual"], 0.25);
  EXPECT_EQ(right["imagesFound"], 12);
  EXPECT_EQ(right["imagesTotal"], 14);
  EXPECT_NEAR(right["rotationDegrees"], 90, 1e-12);
  EXPECT_EQ(right["distanceToBase"], 13);
}

TEST(ResultFile, DescribesARunWithDataCodes) {
  Rig rig;
  rig.hasDataCodes = true;
  rig.minCorners = 12;
  StitchedRig stitched = stitchedSample();
  stitched.cameras[1].residual.reset();
  stitched.cameras[1].imagesShared = 1;
  const json result = json::parse(resultText(rig, stitched));
  EXPECT_EQ(result["board"], "data-code");
  EXPECT_EQ(result["minCorners"], 12);
  EXPECT_FALSE(result.contains("minImages"));
  EXPECT_TRUE(result["cameras"][1]["residual"].is_null());
  EXPECT_EQ(result["cameras"][1]["imagesShared"], 1);
}

TEST(ResultFile, PutsAMatrixRowOnALine) {
  EXPECT_THAT(resultText(sampleRig(), stitchedSample()),
              HasSubstr("        [0.0, -1.0, 0.0, 3.0],\n        [1.0, 0.0, 0.0, 4.0],\n"));
}

TEST(ResultFile, WritesNoMinusZero) {
  StitchedRig stitched = stitchedSample();
  stitched.cameras[1].place.baseFromCam(0, 0) = -0.0;
  EXPECT_THAT(resultText(sampleRig(), stitched), testing::Not(HasSubstr("-0.0")));
}

TEST(ResultFile, EscapesIds) {
  const std::string id = "a \"quoted\" \\ 100%s \xc3\xbc";
  const json result = json::parse(resultText(sampleRig(), stitchedSample(id)));
  EXPECT_EQ(result["cameras"][1]["id"], id);
}

class ResultFileReading : public TempDirTest {};

TEST_F(ResultFileReading, GivesBaseFromCam) {
  writeFile("result.json", resultText(sampleRig(), stitchedSample()));
  const auto poses = readBaseFromCam("result.json");
  ASSERT_EQ(poses.size(), 2U);
  EXPECT_EQ(cv::norm(poses.at("right") - stitchedSample().cameras[1].place.baseFromCam), 0);
}

TEST_F(ResultFileReading, NamesABadFile) {
  for (const char* text : {"", "{}", "[]", "{\"cameras\": [{}]}",
                           "{\"cameras\": [{\"id\": \"a\", \"baseFromCam\": [[1]]}]}",
                           "{\"cameras\": [{\"id\": \"a\", \"baseFromCam\": \"x\"}]}"}) {
    writeFile("bad.json", text);
    EXPECT_THAT(toolError([] { readBaseFromCam("bad.json"); }), StartsWith("bad.json: ")) << text;
  }
}

} // namespace
} // namespace velmorn::tool
