// `velmorn check` after runs of `velmorn stitch`.
#include <gmock/gmock.h>

#include "support/synthetic_rig.h"
#include "support/temp_dir.h"
#include "tools/process.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class CheckProcess : public TempDirTest {
 protected:
  // A rendered rig of cameras "a", "b", "c", ready to be stitched.
  void writeRig(const ViewGroups& groups) {
    RigOptions options;
    options.cameraCount = 3;
    options.groups = groups;
    options.shotsPerGroup = 4;
    options.distorted = false;
    options.ids = {"a", "b", "c"};
    writeRenderedRig(dir(), makeRig(options));
  }

  ProcessResult run(const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_TOOL, arguments, dir());
  }
};

TEST_F(CheckProcess, TrustsASoundRun) {
  writeRig(rowGroups(3));
  ASSERT_EQ(run({"stitch", "rig.json"}).status, 0);
  const ProcessResult check = run({"check", "result.json"});
  EXPECT_EQ(check.status, 0) << check.out;
  EXPECT_THAT(check.out, HasSubstr("\"b\": linked to \"a\", 4 of 4 images with the board"));
  EXPECT_EQ(check.err, "");
}

TEST_F(CheckProcess, ExplainsAFailedRunAndForgetsItAfterASoundOne) {
  writeRig({{0, 1}});
  writeFile("result.json", "of an earlier run");
  const ProcessResult stitch = run({"stitch", "rig.json"});
  EXPECT_EQ(stitch.status, 1);
  EXPECT_THAT(lastLine(stitch.err), HasSubstr("velmorn check result-failed.json"));
  EXPECT_EQ(readFile(dir() / "result.json"), "of an earlier run");

  const ProcessResult check = run({"check", "result.json"});
  EXPECT_EQ(check.status, 3);
  EXPECT_THAT(check.out, AllOf(HasSubstr("PROBLEM  camera \"c\" is not linked to the others"),
                               HasSubstr("Do not trust this result.")));
  EXPECT_THAT(check.err, HasSubstr("the last run failed, result.json is an older one's"));

  writeRig(rowGroups(3));
  ASSERT_EQ(run({"stitch", "rig.json"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(dir() / "result-failed.json"));
  EXPECT_EQ(run({"check", "result.json"}).status, 0);
}

TEST_F(CheckProcess, AFailedRunSaysWhyWhenItsFindingsCannotBeKept) {
  writeRig({{0, 1}});
  std::filesystem::create_directories(dir() / "result-failed.json" / "in the way");
  const ProcessResult stitch = run({"stitch", "rig.json"});
  EXPECT_EQ(stitch.status, 1);
  EXPECT_THAT(lastLine(stitch.err), AllOf(HasSubstr("camera \"c\" could not be linked"),
                                          HasSubstr("its findings could not be kept")));
}

TEST_F(CheckProcess, StitchesAFolderWithoutRigAndCameraFiles) {
  RigOptions options;
  options.groups = rowGroups(2);
  options.shotsPerGroup = 8;
  options.ids = {"a", "b"};
  const SyntheticRig rig = makeRig(options);
  const ImagePathMap images = rig.writeImages(dir(), {});
  for (const std::string& id : rig.ids) {
    std::filesystem::create_directories(dir() / "rig" / id);
    for (std::size_t j = 0; j < images.at(id).size(); ++j)
      std::filesystem::copy(dir() / images.at(id)[j],
                            dir() / "rig" / id / ("board-" + std::to_string(j) + ".png"));
  }
  const ProcessResult stitch = run({"stitch", "rig", "--board", "9x6", "--square", "25"});
  ASSERT_EQ(stitch.status, 0) << stitch.err;
  EXPECT_THAT(stitch.err, HasSubstr("rig/b/intrinsics.yml written, from 8 images"));
  EXPECT_EQ(run({"check", "result.json"}).status, 0);
  EXPECT_EQ(run({"stitch", "rig"}).status, 2);
  EXPECT_EQ(run({"stitch", "rig", "--board", "9x6"}).status, 2);
  EXPECT_EQ(run({"stitch", "result.json", "--board", "9x6"}).status, 2);
}

TEST_F(CheckProcess, NamesAFileThatIsNotThereOrNoResult) {
  EXPECT_EQ(run({"check"}).status, 2);
  const ProcessResult missing = run({"check", "none.json"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_THAT(lastLine(missing.err), HasSubstr("none.json"));
  writeFile("bad.json", "{");
  EXPECT_EQ(run({"check", "bad.json"}).status, 1);
}

} // namespace
} // namespace velmorn::tool
