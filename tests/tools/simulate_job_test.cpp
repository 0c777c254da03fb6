// Job files of simulations: defaults, units and every refusal.
#include "velmorn/simulate_job.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class SimulateJobFile : public TempDirTest {
 protected:
  SimulateJob read(const json& job, const SimulateOverrides& overrides = {}) {
    writeFile("job.json", job.dump());
    return readSimulateJob("job.json", overrides);
  }

  // The message for a job; the file's name is checked and cut off.
  std::string refusal(const json& job, const SimulateOverrides& overrides = {}) {
    const std::string message = toolError([&] { read(job, overrides); });
    EXPECT_THAT(message, StartsWith("job.json: "));
    return message.substr(message.find(": ") + 2);
  }
};

TEST_F(SimulateJobFile, DefaultsWithoutAFile) {
  const SimulateJob job = readSimulateJob("", {});
  EXPECT_EQ(job.kind, SimulatedKind::kConveyor);
  EXPECT_EQ(job.unit, "mm");
  EXPECT_EQ(job.seed, 1);
  EXPECT_FALSE(job.base);
  EXPECT_EQ(job.height, 1200);
  EXPECT_FALSE(job.spacing);
  EXPECT_EQ(job.noise, 1.5);
  EXPECT_EQ(job.blur, 0.7);
  EXPECT_EQ(job.depth.step, 1);
  EXPECT_EQ(job.depth.noise, 0.5);
  EXPECT_EQ(job.depth.holes, 0.001);
  EXPECT_EQ(job.depth.edge, 15);
  EXPECT_EQ(job.plain.corners, cv::Size(9, 6));
  EXPECT_FALSE(job.plain.square);
  EXPECT_EQ(job.plain.shots.shots, 5);
  EXPECT_FALSE(job.code.squares);
  EXPECT_EQ(job.code.shots.shots, 3);
  ASSERT_EQ(job.cameras.size(), 4U);
  EXPECT_FALSE(job.cameras[3].place);
  EXPECT_EQ(job.cameras[3].lens.imageSize, cv::Size(1280, 960));
  EXPECT_EQ(job.cameras[3].lens.fieldOfView, 65);
  EXPECT_FALSE(job.cameras[3].lens.focal);
  EXPECT_THAT(job.cameras[3].lens.distortion, ElementsAre(0, 0, 0, 0));
  EXPECT_EQ(read({{"kind", "platform"}}).plain.shots.shots, 8);
}

TEST_F(SimulateJobFile, ReadsWhatItSays) {
  const SimulateJob job = read({{"kind", "platform"},
                                {"seed", 7},
                                {"base", "cam2"},
                                {"cameras", 3},
                                {"height", 900},
                                {"spacing", 200},
                                {"image_size", {640, 480}},
                                {"focal", 512.5},
                                {"distortion", {-0.1, 0.01, 0, 0, 0.002}},
                                {"noise", 0},
                                {"blur", 1},
                                {"depth", {{"step", 0.25}, {"holes", 0.5}}},
                                {"plain",
                                 {{"board", "7x4"},
                                  {"square", 30},
                                  {"shots", 2},
                                  {"groups", {{"cam1", "cam3"}, {"cam2"}}},
                                  {"only_groups", true}}},
                                {"data_code", {{"squares", "20x14"}, {"size", 50}}}});
  EXPECT_EQ(job.kind, SimulatedKind::kPlatform);
  EXPECT_EQ(job.seed, 7);
  EXPECT_EQ(job.base, std::size_t{1});
  EXPECT_EQ(job.height, 900);
  EXPECT_EQ(job.spacing, 200);
  ASSERT_EQ(job.cameras.size(), 3U);
  EXPECT_EQ(job.cameras[2].lens.imageSize, cv::Size(640, 480));
  EXPECT_EQ(job.cameras[2].lens.focal, 512.5);
  EXPECT_EQ(job.cameras[2].lens.distortion.size(), 5U);
  EXPECT_EQ(job.noise, 0);
  EXPECT_EQ(job.depth.step, 0.25);
  EXPECT_EQ(job.depth.noise, 0.5);
  EXPECT_EQ(job.plain.corners, cv::Size(7, 4));
  EXPECT_EQ(job.plain.square, 30);
  EXPECT_THAT(job.plain.shots.groups, ElementsAre(ElementsAre(0, 2), ElementsAre(1)));
  EXPECT_TRUE(job.plain.shots.onlyGroups);
  EXPECT_EQ(job.code.squares, cv::Size(20, 14));
  EXPECT_EQ(job.code.square, 50);
  EXPECT_FALSE(job.code.shots.onlyGroups);
}

// The defaults are the same lengths in every unit.
TEST_F(SimulateJobFile, UnitsScaleTheDefaults) {
  const SimulateJob metres = read({{"unit", "m"}});
  EXPECT_NEAR(metres.height, 1.2, 1e-12);
  EXPECT_NEAR(metres.depth.step, 0.001, 1e-12);
  EXPECT_NEAR(metres.depth.edge, 0.015, 1e-12);
  EXPECT_NEAR(read({{"unit", "cm"}}).height, 120, 1e-12);
  EXPECT_NEAR(read({{"unit", "in"}}).height, 1200 / 25.4, 1e-12);
  EXPECT_EQ(read({{"unit", "m"}, {"height", 2}}).height, 2);
  EXPECT_EQ(refusal({{"unit", "ft"}}), "\"unit\" has to be \"mm\", \"cm\", \"m\" or \"in\"");
}

TEST_F(SimulateJobFile, ListedCamerasTakeTheJobsLens) {
  const SimulateJob job = read({{"field_of_view", 50},
                                {"cameras",
                                 {{{"position", {1, 2, 900}}},
                                  {{"position", {-1, 2, 1100}},
                                   {"tilt", {3, -4}},
                                   {"turn", 5},
                                   {"focal", 700},
                                   {"image_size", {800, 600}}}}}});
  EXPECT_EQ(job.height, 1000);
  ASSERT_EQ(job.cameras.size(), 2U);
  EXPECT_EQ(job.cameras[0].lens.fieldOfView, 50);
  EXPECT_FALSE(job.cameras[0].lens.focal);
  EXPECT_EQ(job.cameras[0].place->position, cv::Vec3d(1, 2, 900));
  EXPECT_EQ(job.cameras[1].lens.focal, 700);
  EXPECT_EQ(job.cameras[1].lens.imageSize, cv::Size(800, 600));
  EXPECT_EQ(job.cameras[1].place->tiltAlong, 3);
  EXPECT_EQ(job.cameras[1].place->tiltAcross, -4);
  EXPECT_EQ(job.cameras[1].place->turn, 5);
}

TEST_F(SimulateJobFile, CommandLineTakesPrecedence) {
  SimulateOverrides overrides;
  overrides.cameras = 2;
  overrides.seed = 9;
  const SimulateJob job = read({{"cameras", 6}, {"seed", 3}}, overrides);
  EXPECT_EQ(job.cameras.size(), 2U);
  EXPECT_EQ(job.seed, 9);
  const json list = {{{"position", {0, 0, 1}}}, {{"position", {1, 0, 1}}}};
  EXPECT_EQ(refusal({{"cameras", list}}, overrides),
            "\"cameras\" is a list, which --cameras does not go with");
}

TEST_F(SimulateJobFile, RefusesUnknownKeys) {
  EXPECT_THAT(refusal({{"camera", 2}}), StartsWith("unknown key \"camera\" (known: kind, unit, "));
  EXPECT_THAT(refusal({{"depth", {{"scale", 2}}}}),
              StartsWith("\"depth\": unknown key \"scale\" (known: step, noise, holes, edge)"));
  EXPECT_THAT(refusal({{"plain", {{"size", 2}}}}), StartsWith("\"plain\": unknown key \"size\""));
  EXPECT_THAT(refusal({{"data_code", {{"square", 2}}}}),
              StartsWith("\"data_code\": unknown key \"square\""));
  EXPECT_THAT(refusal({{"cameras", {{{"x", 1}}, {{"x", 1}}}}}),
              StartsWith("camera 1: unknown key \"x\""));
  EXPECT_EQ(refusal({{"depth", 3}}), "\"depth\": an object { } is wanted");
  EXPECT_EQ(refusal(json::array()), "an object { } is wanted");
}

TEST_F(SimulateJobFile, RefusesNumbersOutOfTheirLimits) {
  EXPECT_EQ(refusal({{"seed", -1}}), "\"seed\" has to be 0 to 2147483647");
  EXPECT_EQ(refusal({{"seed", 1.5}}), "\"seed\" has to be a whole number");
  EXPECT_EQ(refusal({{"noise", 51}}), "\"noise\" has to be 0 to 50");
  EXPECT_EQ(refusal({{"blur", -0.1}}), "\"blur\" has to be 0 to 10");
  EXPECT_EQ(refusal({{"height", 0}}), "\"height\" has to be a length above 0, at most 1000000");
  EXPECT_EQ(refusal({{"height", 1e300}}), "\"height\" has to be a length above 0, at most 1000000");
  EXPECT_EQ(refusal({{"spacing", 1201}}), "\"spacing\" has to be at most the cameras' height");
  EXPECT_EQ(refusal({{"field_of_view", 121}}), "\"field_of_view\" has to be 10 to 120");
  EXPECT_EQ(refusal({{"focal", 1}}), "\"focal\" has to be 16 to 65536");
  EXPECT_EQ(refusal({{"focal", 600}, {"field_of_view", 60}}),
            "\"focal\" and \"field_of_view\" say the same; give one");
  for (const json& size : {json({63, 480}), json({640, 1e9}), json({640.5, 480})}) {
    EXPECT_EQ(refusal({{"image_size", size}}),
              "\"image_size\" has to be two whole numbers, each 64 to 4096");
  }
  EXPECT_EQ(refusal({{"image_size", "640x480"}}), "\"image_size\" has to be a list of 2 numbers");
  EXPECT_EQ(refusal({{"distortion", {1, 2, 3}}}),
            "\"distortion\" has to be a list of 4, 5, 8 or 12 numbers");
  EXPECT_EQ(refusal({{"distortion", {0, 0, 0, 101}}}), "\"distortion\" has a number beyond 100");
}

TEST_F(SimulateJobFile, RefusesDepthThatSixteenBitsDoNotHold) {
  const std::string counts = " counts; 20 to 60000 can be used";
  EXPECT_EQ(refusal({{"depth", {{"step", 0.01}}}}),
            "\"depth\": \"step\" makes the cameras' height 120000" + counts);
  EXPECT_EQ(refusal({{"depth", {{"step", 100}}}}),
            "\"depth\": \"step\" makes the cameras' height 12" + counts);
  EXPECT_EQ(refusal({{"depth", {{"step", 1e-300}}}}),
            "\"depth\": \"step\" makes the cameras' height 1000000000000000" + counts);
  EXPECT_EQ(refusal({{"depth", {{"step", 0}}}}),
            "\"depth\": \"step\" has to be a length above 0, at most 1000000");
  EXPECT_EQ(refusal({{"depth", {{"holes", 1.1}}}}), "\"depth\": \"holes\" has to be 0 to 1");
  EXPECT_EQ(refusal({{"depth", {{"noise", -1}}}}), "\"depth\": \"noise\" has to be 0 to 1000000");
  EXPECT_EQ(refusal({{"depth", {{"edge", -1}}}}), "\"depth\": \"edge\" has to be 0 to 1000000");
}

TEST_F(SimulateJobFile, RefusesOtherKindsAndBases) {
  EXPECT_EQ(refusal({{"kind", "table"}}), "\"kind\" has to be \"conveyor\" or \"platform\"");
  EXPECT_EQ(refusal({{"base", "cam5"}}),
            "there is no camera \"cam5\", they are \"cam1\" to \"cam4\"");
}

TEST_F(SimulateJobFile, RefusesOtherBoards) {
  for (const char* board : {"2x6", "9x101", "9", "data-code"}) {
    EXPECT_EQ(refusal({{"plain", {{"board", board}}}}),
              "\"plain\": \"board\" has to be inner corners such as 9x6, each 3 to 100");
  }
  EXPECT_EQ(refusal({{"plain", {{"square", -1}}}}),
            "\"plain\": \"square\" has to be a length above 0, at most 1000000");
  EXPECT_EQ(refusal({{"plain", {{"shots", 0}}}}), "\"plain\": \"shots\" has to be 1 to 50");
  EXPECT_EQ(refusal({{"data_code", {{"squares", "201x2"}}}}),
            "\"data_code\": \"squares\" has to be such as 40x16, each 2 to 200");
  EXPECT_EQ(refusal({{"data_code", {{"size", 0}}}}),
            "\"data_code\": \"size\" has to be a length above 0, at most 1000000");
  EXPECT_EQ(refusal({{"data_code", {{"shots", 51}}}}),
            "\"data_code\": \"shots\" has to be 1 to 50");
}

TEST_F(SimulateJobFile, RefusesOtherGroups) {
  const auto withGroups = [](const json& groups) { return json{{"plain", {{"groups", groups}}}}; };
  EXPECT_EQ(refusal(withGroups("cam1")),
            "\"plain\": \"groups\" has to be 1 to 45 lists of camera ids");
  EXPECT_EQ(refusal(withGroups(json::array())),
            "\"plain\": \"groups\" has to be 1 to 45 lists of camera ids");
  EXPECT_EQ(refusal(withGroups(std::vector<json>(46, {"cam1"}))),
            "\"plain\": \"groups\" has to be 1 to 45 lists of camera ids");
  for (const json& group : {json("cam1"), json::array(), json({1, 2})}) {
    EXPECT_EQ(refusal(withGroups(json::array({group}))),
              "\"plain\": every group has to be a list of camera ids");
  }
  EXPECT_EQ(refusal(withGroups(json::array({json::array({"cam1", "left"})}))),
            "\"plain\": there is no camera \"left\", they are \"cam1\" to \"cam4\"");
  EXPECT_EQ(refusal(withGroups(json::array({json::array({"cam1", "cam1"})}))),
            "\"plain\": camera \"cam1\" is twice in one group");
}

TEST_F(SimulateJobFile, RefusesOtherCameras) {
  EXPECT_EQ(refusal({{"cameras", 1}}), "\"cameras\" has to be 2 to 10");
  EXPECT_EQ(refusal({{"cameras", "two"}}), "\"cameras\" has to be a whole number");
  EXPECT_EQ(refusal({{"cameras", json::array()}}), "a rig has 2 to 10 cameras, not 0");
  EXPECT_EQ(refusal({{"cameras", std::vector<json>(11, json::object())}}),
            "a rig has 2 to 10 cameras, not 11");
  const auto withSecond = [](const json& second) {
    return json{{"cameras", json::array({{{"position", {0, 0, 1000}}}, second})}};
  };
  EXPECT_EQ(refusal(withSecond(json::object())), "camera 2: key \"position\" is missing");
  EXPECT_THAT(refusal(withSecond({{"position", {0, 0, 0}}})), HasSubstr("with z above 0"));
  EXPECT_THAT(refusal(withSecond({{"position", {1e8, 0, 1}}})), HasSubstr("at most 10000000"));
  EXPECT_EQ(refusal(withSecond({{"position", {0, 0, 1000}}, {"tilt", {61, 0}}})),
            "camera 2: \"tilt\" has to be two angles of -60 to 60");
  EXPECT_EQ(refusal(withSecond({{"position", {0, 0, 1000}}, {"turn", 181}})),
            "camera 2: \"turn\" has to be -180 to 180");
  EXPECT_EQ(refusal(withSecond({{"position", {0, 10000, 1000}}})),
            "a camera is farther from the ground's middle than 10 times the cameras' mean height");
  json placed = withSecond({{"position", {0, 0, 1000}}});
  placed["spacing"] = 100;
  EXPECT_EQ(refusal(placed), "\"spacing\" does not go with a list of cameras");
}

TEST_F(SimulateJobFile, RefusesWhatIsNoJson) {
  writeFile("job.json", "{\"seed\": NaN}");
  EXPECT_THAT(toolError([] { readSimulateJob("job.json", {}); }),
              StartsWith("job.json: not valid JSON: "));
  EXPECT_EQ(toolError([] { readSimulateJob("gone.json", {}); }), "no such file: gone.json");
}

} // namespace
} // namespace velmorn::tool
