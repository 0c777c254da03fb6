// The whole way on the real pair: intrinsics, stitching, and the check against OpenCV.
#include <gmock/gmock.h>

#include "support/real_images.h"
#include "support/temp_dir.h"
#include "tools/process.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

class RealPair : public TempDirTest {
 protected:
  void calibrate(const std::string& output, const std::vector<std::string>& images) {
    std::vector<std::string> arguments = {"intrinsics", "--board", "9x6", "--square",
                                          "25",         "-o",      output};
    arguments.insert(arguments.end(), images.begin(), images.end());
    const ProcessResult result = runProcess(VELMORN_TOOL, arguments, dir());
    ASSERT_EQ(result.status, 0) << result.err;
  }

  ProcessResult check(const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"rig.json", "result.json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return runProcess(VELMORN_STEREO_CHECK, arguments, dir());
  }
};

TEST_F(RealPair, AgreesWithStereoCalibrate) {
  const StereoSet set = stereoSet();
  calibrate("left.yml", set.left);
  calibrate("right.yml", set.right);
  const nlohmann::json rig = {
      {"board", "9x6"},
      {"square", 25},
      {"cameras",
       {rigCamera("left", "left.yml", set.left), rigCamera("right", "right.yml", set.right)}}};
  writeFile(dir() / "rig.json", rig.dump());
  ASSERT_EQ(runProcess(VELMORN_TOOL, {"stitch", "rig.json"}, dir()).status, 0);

  const ProcessResult agrees = check({});
  EXPECT_EQ(agrees.status, 0) << agrees.out << agrees.err;
  EXPECT_THAT(agrees.out, HasSubstr("83.6"));
  EXPECT_THAT(agrees.out, HasSubstr("PASS: "));
  EXPECT_EQ(agrees.err, "");

  EXPECT_EQ(check({"--max-degrees", "0.001"}).status, 1);
  const ProcessResult differs = check({"--max-baseline", "0.001"});
  EXPECT_EQ(differs.status, 1);
  EXPECT_THAT(differs.out, HasSubstr("FAIL: "));
  EXPECT_EQ(check({"--bogus"}).status, 2);
}

} // namespace
} // namespace velmorn::tool
