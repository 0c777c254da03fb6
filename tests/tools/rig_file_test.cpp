// Rig files: defaults, paths and every refusal.
#include "velmorn/rig_file.h"

#include <gmock/gmock.h>

#include <functional>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class RigFile : public TempDirTest {
 protected:
  RigFile() { writeTwoCameraFiles(dir()); }

  Rig read(const json& rig) {
    writeFile("rig.json", rig.dump());
    return readRig("rig.json");
  }

  // The message for the two-camera rig after a change; the file's name is checked and cut off.
  std::string refusal(const std::function<void(json&)>& change) {
    json rig = twoCameraRig();
    change(rig);
    const std::string message = toolError([&] { read(rig); });
    EXPECT_THAT(message, StartsWith("rig.json: "));
    return message.substr(message.find(": ") + 2);
  }

  std::string refusalOfText(const std::string& text) {
    writeFile("rig.json", text);
    return toolError([] { readRig("rig.json"); });
  }
};

TEST_F(RigFile, FillsInTheDefaults) {
  const Rig rig = read(twoCameraRig());
  EXPECT_EQ(rig.board.width, 9);
  EXPECT_EQ(rig.board.height, 6);
  EXPECT_EQ(rig.square, 25.0F);
  EXPECT_EQ(rig.minImages, 3);
  EXPECT_EQ(rig.base, kAutoBase);
  EXPECT_FALSE(rig.saveCornerImages);
  ASSERT_EQ(rig.cameras.size(), 2U);
  EXPECT_EQ(rig.cameras[0].id, "a");
  EXPECT_EQ(rig.cameras[1].model.intrinsic.matrix[0], 500);
  EXPECT_THAT(rig.cameras[1].images, ElementsAre("b0.png", "b1.png", "b2.png"));
}

TEST_F(RigFile, TakesEveryKey) {
  json rig = twoCameraRig();
  rig["min_images"] = 2;
  rig["base"] = "b";
  rig["save_corner_images"] = true;
  const Rig read = RigFile::read(rig);
  EXPECT_EQ(read.minImages, 2);
  EXPECT_EQ(read.base, 1);
  EXPECT_TRUE(read.saveCornerImages);
}

TEST_F(RigFile, ReadsAPatternAsText) {
  json rig = twoCameraRig();
  rig["cameras"][0]["images"] = "a*.png";
  EXPECT_THAT(read(rig).cameras[0].images, ElementsAre("a0.png", "a1.png", "a2.png"));
}

TEST_F(RigFile, TakesPathsRelativeToTheFile) {
  std::filesystem::create_directory("sub");
  writeTwoCameraFiles("sub");
  std::filesystem::remove("cam.yml");
  writeFile("sub/rig.json", twoCameraRig().dump());
  EXPECT_EQ(readRig("sub/rig.json").cameras[0].images[1], "sub/a1.png");
}

TEST_F(RigFile, TakesAnyTextAsId) {
  for (const std::string& id : {std::string("front left"), std::string("100%s%n"),
                                std::string(511, 'x'), std::string("links \xc3\xbc/ber")}) {
    json rig = twoCameraRig();
    rig["cameras"][0]["id"] = id;
    EXPECT_EQ(read(rig).cameras[0].id, id);
  }
}

TEST_F(RigFile, RefusesBadIds) {
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["id"] = ""; }),
              AllOf(HasSubstr("camera 2"), HasSubstr("\"id\" is empty")));
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["id"] = 7; }), HasSubstr("has to be a text"));
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["id"] = "a\nb"; }),
              HasSubstr("control character"));
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["id"] = std::string("a\0b", 3); }),
              HasSubstr("control character"));
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["id"] = std::string(512, 'x'); }),
              HasSubstr("longer than 511"));
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["id"] = "auto"; }), HasSubstr("auto"));
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1]["id"] = "a"; }), "two cameras have the id \"a\"");
}

TEST_F(RigFile, RefusesUnknownAndMissingKeys) {
  EXPECT_THAT(refusal([](json& r) { r["minimages"] = 2; }),
              StartsWith("unknown key \"minimages\" (known: board, "));
  EXPECT_THAT(refusal([](json& r) { r["cameras"][0]["image"] = 2; }),
              StartsWith("camera 1: unknown key \"image\""));
  EXPECT_EQ(refusal([](json& r) { r.erase("board"); }), "key \"board\" is missing");
  EXPECT_EQ(refusal([](json& r) { r.erase("square"); }), "key \"square\" is missing");
  EXPECT_EQ(refusal([](json& r) { r.erase("cameras"); }), "key \"cameras\" is missing");
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1].erase("intrinsics"); }),
            "camera \"b\": key \"intrinsics\" is missing");
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1].erase("images"); }),
            "camera \"b\": key \"images\" is missing");
}

TEST_F(RigFile, RefusesBadNumbers) {
  EXPECT_THAT(refusal([](json& r) { r["board"] = "9x2"; }), HasSubstr("each 3 to 1000"));
  EXPECT_THAT(refusal([](json& r) { r["board"] = 9; }), HasSubstr("\"board\" has to be a text"));
  for (const json& square : {json(0), json(-25), json(1e300)}) {
    EXPECT_EQ(refusal([&](json& r) { r["square"] = square; }),
              "\"square\" has to be a length above 0");
  }
  EXPECT_EQ(refusal([](json& r) { r["square"] = "25"; }), "\"square\" has to be a number");
  EXPECT_EQ(refusal([](json& r) { r["min_images"] = 0; }), "\"min_images\" has to be at least 1");
  for (const json& number : {json(2.5), json("3"), json(99999999999)}) {
    EXPECT_EQ(refusal([&](json& r) { r["min_images"] = number; }),
              "\"min_images\" has to be a whole number");
  }
  EXPECT_EQ(refusal([](json& r) { r["min_images"] = 4; }),
            "\"min_images\" is 4, but each camera has 3 images");
  EXPECT_EQ(refusal([](json& r) { r["save_corner_images"] = 1; }),
            "\"save_corner_images\" has to be true or false");
}

TEST_F(RigFile, TakesADataCodeBoard) {
  json rig = twoCameraRig();
  rig["board"] = "data-code";
  rig.erase("square");
  const Rig read = RigFile::read(rig);
  EXPECT_TRUE(read.hasDataCodes);
  EXPECT_EQ(read.minCorners, 12);
  EXPECT_EQ(read.minImages, 1);
  rig["min_corners"] = 30;
  EXPECT_EQ(RigFile::read(rig).minCorners, 30);
  EXPECT_FALSE(RigFile::read(twoCameraRig()).hasDataCodes);
}

TEST_F(RigFile, RefusesTheOtherBoardsKeys) {
  EXPECT_EQ(refusal([](json& r) { r["board"] = "data-code"; }),
            "\"square\" does not go with a data-code board, whose codes say it");
  EXPECT_THAT(refusal([](json& r) {
                r["board"] = "data-code";
                r.erase("square");
                r["min_images"] = 3;
              }),
              StartsWith("\"min_images\" is for a plain board; "));
  EXPECT_EQ(refusal([](json& r) { r["min_corners"] = 12; }),
            "\"min_corners\" is for a data-code board");
  for (const int number : {-1, 0, 3, 513}) {
    EXPECT_EQ(refusal([&](json& r) {
                r["board"] = "data-code";
                r.erase("square");
                r["min_corners"] = number;
              }),
              "\"min_corners\" has to be 4 to 512");
  }
  EXPECT_THAT(refusal([](json& r) { r["board"] = "datacode"; }),
              StartsWith("\"board\" has to be \"data-code\" or inner corners per row"));
}

TEST_F(RigFile, RefusesAnUnknownBase) {
  EXPECT_THAT(refusal([](json& r) { r["base"] = "c"; }), StartsWith("\"base\" is \"c\""));
  EXPECT_THAT(refusal([](json& r) { r["base"] = 0; }), HasSubstr("has to be a text"));
}

TEST_F(RigFile, RefusesOtherNumbersOfCameras) {
  EXPECT_EQ(refusal([](json& r) { r["cameras"].erase(1); }), "a rig has 2 to 10 cameras, not 1");
  EXPECT_EQ(refusal([](json& r) {
              for (int i = 0; i < 9; ++i)
                r["cameras"].push_back(rigCamera("x", "cam.yml", {"a0.png"}));
            }),
            "a rig has 2 to 10 cameras, not 11");
  EXPECT_EQ(refusal([](json& r) { r["cameras"] = 3; }), "\"cameras\" has to be a list");
  EXPECT_EQ(refusal([](json& r) { r["cameras"][0] = 3; }), "camera 1: an object { } is wanted");
}

TEST_F(RigFile, SaysTheNumbersOfImagesThatDiffer) {
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["images"] = {"b0.png"}; }),
              StartsWith("camera \"b\" has 1 image, camera \"a\" has 3"));
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1]["images"] = json::array(); }),
            "camera \"b\": \"images\" is an empty list");
}

TEST_F(RigFile, NamesTheCameraOfAFileThatIsMissing) {
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1]["images"] = "c*.png"; }),
            "camera \"b\": no file matches c*.png");
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1]["images"][2] = "gone.png"; }),
            "camera \"b\": no such file: gone.png");
  EXPECT_EQ(refusal([](json& r) { r["cameras"][1]["intrinsics"] = "gone.yml"; }),
            "camera \"b\": no such file: gone.yml");
  writeFile("broken.yml", "camera_matrix: [");
  EXPECT_THAT(refusal([](json& r) { r["cameras"][1]["intrinsics"] = "broken.yml"; }),
              StartsWith("camera \"b\": broken.yml: not readable as YAML"));
}

TEST_F(RigFile, SaysTheLineOfASyntaxError) {
  EXPECT_THAT(refusalOfText("{\n\"board\": \"9x6\"\n\"square\": 25\n}"),
              AllOf(StartsWith("rig.json: not valid JSON: "), HasSubstr("line 3")));
  EXPECT_THAT(refusalOfText(""), StartsWith("rig.json: not valid JSON: "));
  EXPECT_THAT(refusalOfText("[1]"), HasSubstr("an object { } is wanted"));
  EXPECT_THAT(refusalOfText(std::string(100000, '[')), HasSubstr("not valid JSON"));
  EXPECT_THAT(refusalOfText("{\"board\": \"\xff\"}"), HasSubstr("not valid JSON"));
}

TEST_F(RigFile, RefusesAKeyGivenTwice) {
  EXPECT_EQ(refusalOfText("{\"board\": \"9x6\", \"square\": 1, \"board\": \"9x7\"}"),
            "rig.json: key \"board\" given twice");
}

TEST_F(RigFile, NamesAFileThatIsMissing) {
  EXPECT_EQ(toolError([] { readRig("gone.json"); }), "no such file: gone.json");
}

} // namespace
} // namespace velmorn::tool
