// `velmorn field`, run as a process.
#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/process.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class FieldProcess : public TempDirTest {
 protected:
  // 640x480, f = 500 and 250, principal point (319.5, 200).
  FieldProcess() {
    writeFile(dir() / "cam.yml",
              cameraYaml("0., 0., 0., 0.", "500., 0., 319.5, 0., 250., 200., 0., 0., 1."));
  }

  ProcessResult run(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {"field"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProcess(VELMORN_TOOL, words, dir());
  }

  void expectWrongUsage(const std::vector<std::string>& arguments, const std::string& message) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(message));
  }
};

// The angle is 2 atan(320 / 500); 640 pixels of it are 1280 wide at 1000, and 1250 at 625 / 1.28.
TEST_F(FieldProcess, GivesTheFieldOfACameraFile) {
  const ProcessResult result = run({"--intrinsics", "cam.yml", "--distance", "1001"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "x1, y1, x2, y2  -639.639, -800.8, 639.639, 1117.116\n"
            "width, height   1279.278, 1917.916\n"
            "per pixel       2.002, 4.004\n"
            "angle of view   65.23849 degrees\n"
            "sample factor   3\n");
}

TEST_F(FieldProcess, TakesAnotherImageSize) {
  const std::vector<std::string> arguments = {"--intrinsics", "cam.yml", "--distance",
                                              "1000",         "--size",  "320x240"};
  const ProcessResult result = run(arguments);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, StartsWith("x1, y1, x2, y2  -639, -800, -1, 156\n"));
  EXPECT_EQ(result.err, "velmorn: warning: the image is 320x240, but cam.yml is for 640x480\n");
  writeFile(dir() / "cam.yml", with(readFile(dir() / "cam.yml"), "image_width: 640\n", ""));
  EXPECT_EQ(run(arguments).err, "");
  const ProcessResult without = run({"--intrinsics", "cam.yml", "--distance", "1000"});
  EXPECT_EQ(without.status, 1);
  EXPECT_EQ(without.err, "velmorn: cam.yml does not say the image size; give --size\n");
}

TEST_F(FieldProcess, GivesTheSampleFactorOfAnAngle) {
  const ProcessResult result = run({"--fov", "60", "--pixels", "100", "--distance", "1000"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "sample factor   12\n");
  const ProcessResult far = run({"--fov", "179.99", "--pixels", "1", "--distance", "1e30"});
  EXPECT_EQ(far.status, 1);
  EXPECT_EQ(far.err, "velmorn: the sample factor is beyond what an int holds\n");
}

TEST_F(FieldProcess, RefusesFieldsBeyondTheLibrarysLimit) {
  const ProcessResult result = run({"--intrinsics", "cam.yml", "--distance", "1e9"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, StartsWith("velmorn: the field reaches 16777215 length units"));
}

TEST_F(FieldProcess, TellsWrongUsage) {
  expectWrongUsage({}, "--distance is required");
  expectWrongUsage({"--distance", "1"}, "--intrinsics, or --fov and --pixels, is required");
  expectWrongUsage({"--distance", "1", "--fov", "60"}, "is required");
  expectWrongUsage({"--distance", "1", "--pixels", "60"}, "is required");
  expectWrongUsage({"--distance", "1", "--intrinsics", "cam.yml", "--fov", "60"}, "--fov");
  expectWrongUsage({"--distance", "1", "--fov", "60", "--pixels", "9", "--size", "9x9"}, "--size");
  for (const char* fov : {"0", "180", "-5", "nan", "wide"}) {
    expectWrongUsage({"--distance", "1", std::string("--fov=") + fov, "--pixels", "9"}, "--fov");
  }
  for (const char* pixels : {"0", "-5", "1.5", "99999999999"}) {
    expectWrongUsage({"--distance", "1", "--fov", "60", std::string("--pixels=") + pixels},
                     "--pixels");
  }
  expectWrongUsage({"--distance", "1", "--intrinsics", "cam.yml", "--size", "9"}, "--size");
  expectWrongUsage({"--distance", "0", "--fov", "60", "--pixels", "9"}, "--distance");
  expectWrongUsage({"--distance", "1", "--intrinsics", "gone.yml"}, "gone.yml");
  EXPECT_THAT(run({"--help"}).out, HasSubstr("Example:\n  velmorn field"));
}

} // namespace
} // namespace velmorn::tool
