// The built tool, run as a process on the real stereo set.
#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "support/real_images.h"
#include "support/temp_dir.h"
#include "tools/process.h"
#include "tools/rig_builder.h"
#include "velmorn64.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class VelmornProcess : public TempDirTest {
 protected:
  ProcessResult run(const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_TOOL, arguments, dir());
  }

  // A rig of the first images of the real pair, with approximate intrinsics of it.
  json realRig(std::size_t images = 3) {
    const StereoSet set = stereoSet();
    writeFile(dir() / "left.yml", cameraYaml("-0.265, -0.047, 0.0018, -0.0003, 0.252",
                                             "536., 0., 342.4, 0., 536., 235.5, 0., 0., 1."));
    writeFile(dir() / "right.yml", cameraYaml("-0.283, 0.1115, -0.0005, 0.0011, -0.032",
                                              "542.3, 0., 328.1, 0., 541.6, 247., 0., 0., 1."));
    const auto some = [&](const std::vector<std::string>& all) {
      return std::vector<std::string>(all.begin(), all.begin() + static_cast<long>(images));
    };
    return {{"board", "9x6"},
            {"square", 25},
            {"cameras",
             {rigCamera("left", "left.yml", some(set.left)),
              rigCamera("right", "right.yml", some(set.right))}}};
  }

  ProcessResult stitch(const json& rig) {
    writeFile(dir() / "rig.json", rig.dump());
    return run({"stitch", "rig.json"});
  }

  std::size_t lineCount(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  }
};

TEST_F(VelmornProcess, StitchesTheRealPair) {
  const ProcessResult result = stitch(realRig());
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, StartsWith("camera  linked"));
  EXPECT_EQ(lineCount(result.out), 3U);
  EXPECT_THAT(result.err, AllOf(StartsWith("[1/6] left left01.jpg: board found\n"),
                                EndsWith("[6/6] right right03.jpg: board found\n")));
  const json written = json::parse(readFile(dir() / "result.json"));
  EXPECT_EQ(written["base"], "left");
  EXPECT_EQ(written["cameras"][1]["parent"], "left");
  EXPECT_NEAR(written["cameras"][1]["distanceToBase"], 83.6, 3);
  EXPECT_EQ(written["cameras"][1]["camFromBase"], written["cameras"][1]["libraryEntry"]);
  EXPECT_FALSE(fs::exists(dir() / "chessImgs"));
  EXPECT_TRUE(fs::exists(dir() / "velmorn.log"));
}

TEST_F(VelmornProcess, GivesTheSameFileTwice) {
  stitch(realRig());
  const std::string first = readFile(dir() / "result.json");
  stitch(realRig());
  EXPECT_EQ(readFile(dir() / "result.json"), first);
}

TEST_F(VelmornProcess, WritesWhereItIsTold) {
  writeFile(dir() / "rig.json", realRig().dump());
  fs::create_directory(dir() / "out");
  ASSERT_EQ(run({"stitch", "rig.json", "-o", "out/pair.json"}).status, 0);
  EXPECT_TRUE(fs::exists(dir() / "out/pair.json"));
  EXPECT_FALSE(fs::exists(dir() / "result.json"));
}

TEST_F(VelmornProcess, SavesCornerImagesAndTakesTheBase) {
  json rig = realRig();
  rig["save_corner_images"] = true;
  rig["base"] = "right";
  ASSERT_EQ(stitch(rig).status, 0);
  EXPECT_TRUE(fs::exists(dir() / "chessImgs/corner-002-left.bmp"));
  const json written = json::parse(readFile(dir() / "result.json"));
  EXPECT_EQ(written["base"], "right");
  EXPECT_EQ(written["cameras"][0]["parent"], "right");
}

TEST_F(VelmornProcess, TakesOddIds) {
  json rig = realRig();
  rig["save_corner_images"] = true;
  const std::string longId(511, 'x');
  for (const auto& [left, right] : std::vector<std::pair<std::string, std::string>>{
           {"front left", "100% %s%n"}, {longId, "../%d"}}) {
    rig["cameras"][0]["id"] = left;
    rig["cameras"][1]["id"] = right;
    const ProcessResult result = stitch(rig);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(right));
    const json written = json::parse(readFile(dir() / "result.json"));
    EXPECT_EQ(written["cameras"][0]["id"], left);
    EXPECT_EQ(written["cameras"][1]["id"], right);
  }
}

TEST_F(VelmornProcess, SaysWhichCameraCouldNotBeLinked) {
  writeFile(dir() / "result.json", "as it was");
  json rig = realRig();
  fs::create_directory(dir() / "images");
  json& images = rig["cameras"][1]["images"];
  writeFile(dir() / "broken.jpg", "no image");
  images[1] = "broken.jpg";
  const ProcessResult result = stitch(rig);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(lastLine(result.err),
              AllOf(StartsWith("velmorn: camera \"right\" could not be linked"),
                    HasSubstr("\"left\" 2, needed 3"), HasSubstr("broken.jpg")));
  EXPECT_EQ(readFile(dir() / "result.json"), "as it was");
}

TEST_F(VelmornProcess, SurvivesATruncatedImage) {
  json rig = realRig(4);
  const std::string whole = readFile(rig["cameras"][0]["images"][0].get<std::string>());
  writeFile(dir() / "cut.jpg", whole.substr(0, whole.size() / 3));
  writeFile(dir() / "head.jpg", whole.substr(0, 10));
  rig["cameras"][0]["images"][0] = "cut.jpg";
  EXPECT_EQ(stitch(rig).status, 0);
  rig["cameras"][0]["images"][1] = "head.jpg";
  EXPECT_EQ(stitch(rig).status, 1);
}

TEST_F(VelmornProcess, ReportsABadRigInOneLine) {
  writeFile(dir() / "result.json", "as it was");
  json rig = realRig();
  rig["cameras"][1]["images"][1] = "gone\n.jpg";
  const ProcessResult withControl = stitch(rig);
  EXPECT_EQ(withControl.status, 1);
  EXPECT_EQ(lineCount(withControl.err), 1U);
  rig["cameras"][1]["images"][1] = "gone.jpg";
  const ProcessResult result = stitch(rig);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "velmorn: rig.json: camera \"right\": no such file: gone.jpg\n");
  EXPECT_EQ(readFile(dir() / "result.json"), "as it was");
}

TEST_F(VelmornProcess, KeepsOpenCvsOwnMessagesAway) {
  json rig = realRig();
  writeFile(dir() / "left.yml", "%YAML:1.0\n---\ncamera_matrix: [ 1, \n");
  const ProcessResult result = stitch(rig);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(lineCount(result.err), 1U) << result.err;
  EXPECT_THAT(result.err, StartsWith("velmorn: rig.json: camera \"left\": left.yml: "));
}

TEST_F(VelmornProcess, WarnsAboutIntrinsicsForAnotherImageSize) {
  json rig = realRig();
  std::string text = readFile(dir() / "left.yml");
  writeFile(dir() / "left.yml", text.replace(text.find("640"), 3, "800"));
  const ProcessResult result = stitch(rig);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, StartsWith("velmorn: warning: camera \"left\": the images are 640x480, "
                                     "but left.yml is for 800x480\n"));
}

TEST_F(VelmornProcess, FailsWithAReasonWhereNothingCanBeWritten) {
  writeFile(dir() / "rig.json", realRig().dump());
  const std::string rig = (dir() / "rig.json").string();
  const ProcessResult refused = runProcess(VELMORN_TOOL, {"stitch", rig}, "/proc");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, StartsWith("velmorn: cannot write result.json: "));
  EXPECT_EQ(lineCount(refused.err), 1U);

  // The log and the corner images cannot be written either, which is no failure.
  const std::string output = (dir() / "result.json").string();
  const ProcessResult result = runProcess(VELMORN_TOOL, {"stitch", rig, "-o", output}, "/proc");
  EXPECT_EQ(result.status, 0) << result.err;
}

TEST_F(VelmornProcess, CalibratesFromAQuotedPattern) {
  const StereoSet set = stereoSet();
  for (int i = 0; i < 4; ++i) {
    fs::copy_file(set.left[static_cast<std::size_t>(i)],
                  dir() / ("l" + std::to_string(i) + ".jpg"));
  }
  writeFile(dir() / "l9.jpg", "no image");
  const ProcessResult result =
      run({"intrinsics", "--board", "9x6", "--square", "25", "-o", "left.yml", "l*.jpg"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(StartsWith("images      4 of 5 usable, 640x480 pixels\nrms error "),
                                EndsWith("written to  left.yml\n")));
  EXPECT_THAT(result.err, HasSubstr("[5/5] l9.jpg: not readable as an image\n"));
  json rig = realRig();
  rig["cameras"][0]["intrinsics"] = rig["cameras"][1]["intrinsics"] = "left.yml";
  EXPECT_EQ(stitch(rig).status, 0);
}

TEST_F(VelmornProcess, KeepsAGoodCameraFile) {
  const StereoSet set = stereoSet();
  writeFile(dir() / "left.yml", "as it was");
  const ProcessResult result = run({"intrinsics", "--board", "9x6", "--square", "25", "-o",
                                    "left.yml", set.left[0], set.left[1]});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(lastLine(result.err), "velmorn: 2 usable images of 2, at least 3 are needed");
  EXPECT_EQ(readFile(dir() / "left.yml"), "as it was");
}

TEST_F(VelmornProcess, TellsWrongUsageFromFailure) {
  writeFile(dir() / "rig.json", "{}");
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"bogus"},
      {"stitch"},
      {"stitch", "gone.json"},
      {"stitch", "rig.json", "--fast"},
      {"stitch", "rig.json", "rig.json"},
      {"intrinsics"},
      {"intrinsics", "--board", "9x6", "--square", "25", "-o", "c.yml"},
      {"intrinsics", "--board", "9by6", "--square", "25", "-o", "c.yml", "a.jpg"},
      {"intrinsics", "--board", "9x6", "--square", "0", "-o", "c.yml", "a.jpg"},
      {"intrinsics", "--board", "9x6", "--square", "nan", "-o", "c.yml", "a.jpg"},
      {"intrinsics", "--board", "9x6", "--square", "wide", "-o", "c.yml", "a.jpg"},
      {"intrinsics", "--board", "9x6", "--square", "25", "-o", "c.xml", "a.jpg"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err, "");
  }
  EXPECT_EQ(run({"stitch", "rig.json"}).status, 1);
}

TEST_F(VelmornProcess, HelpsOnTheStandardOutput) {
  const ProcessResult version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, std::string("velmorn ") + VELMORN64_VERSION + "\n");
  for (const char* command : {"stitch", "intrinsics"}) {
    const ProcessResult help = run({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr(std::string("Example:\n  velmorn ") + command));
    EXPECT_EQ(help.err, "");
  }
}

} // namespace
} // namespace velmorn::tool
