// `velmorn background`, run as a process.
#include <gmock/gmock.h>

#include <algorithm>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// z = 100 + x / 2 + y at the middles of 4 x 3 cells of side 1, and one point 9 lower than the rest
// of its cell.
Points tiltedPlane() {
  Points points;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) {
      const float x = static_cast<float>(column) + 0.5F;
      const float y = static_cast<float>(row) + 0.5F;
      points.push_back({x, y, 100 + x / 2 + y});
    }
  }
  points.push_back({0.25F, 0.25F, 91.75F});
  return points;
}

class BackgroundProcess : public TempDirTest {
 protected:
  ProcessResult run(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {"background"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProcess(VELMORN_TOOL, words, dir());
  }

  void expectFailure(const std::vector<std::string>& arguments, const std::string& message) {
    writeFile(dir() / "background.tiff", "as it was");
    writeFile(dir() / "background-view.png", "as it was, too");
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("velmorn: " + message));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    EXPECT_EQ(readFile(dir() / "background.tiff"), "as it was");
    EXPECT_EQ(readFile(dir() / "background-view.png"), "as it was, too");
  }

  void expectWrongUsage(const std::vector<std::string>& arguments, const std::string& message) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(message));
  }
};

TEST_F(BackgroundProcess, WritesHeightsAndTheirView) {
  writeFile(dir() / "a.xyz", xyzText(tiltedPlane()) + "nan 0 1\n");
  const ProcessResult result = run({"a.xyz", "--cell", "1", "--region", "0,0,4,3"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "points      13 used, 1 skipped, 13 in the region\n"
            "region      0, 0, 4, 3\n"
            "grid        5 x 4 cells of 1\n"
            "z           91.8 to 104.2\n"
            "written to  background.tiff\n"
            "view        background-view.png\n");
  const cv::Mat heights = cv::imread((dir() / "background.tiff").string(), cv::IMREAD_UNCHANGED);
  ASSERT_EQ(heights.type(), CV_32FC1);
  ASSERT_EQ(heights.size(), cv::Size(5, 4));
  EXPECT_EQ(heights.at<float>(0, 0), 91.75F);
  EXPECT_EQ(heights.at<float>(2, 3), 104.25F);
  EXPECT_EQ(heights.at<float>(3, 4), 104.25F); // filled
  const cv::Mat view = cv::imread((dir() / "background-view.png").string());
  EXPECT_GT(view.cols, 900); // 180 pixels a cell
  EXPECT_GT(view.rows, 720);
}

TEST_F(BackgroundProcess, TakesEveryOptionAndFormat) {
  writeFile(dir() / "a.ply", plyText(tiltedPlane(), PlyForm::kLittleEndian));
  writeFile(dir() / "a.pcd", pcdText(tiltedPlane(), PcdForm::kBinary));
  for (const char* name : {"a.ply", "a.pcd"}) {
    const ProcessResult result = run({name, "--cell", "1", "--highest", "--region=-1,0,4,3",
                                      "--min-points", "13", "-o", "h.tif"});
    ASSERT_EQ(result.status, 0) << result.err;
    const cv::Mat heights = cv::imread((dir() / "h.tif").string(), cv::IMREAD_UNCHANGED);
    ASSERT_EQ(heights.size(), cv::Size(6, 4));
    EXPECT_EQ(heights.at<float>(0, 1), 100.75F);
    EXPECT_TRUE(std::filesystem::exists(dir() / "h-view.png"));
  }
}

TEST_F(BackgroundProcess, TakesTheCloudsOwnRegion) {
  writeFile(dir() / "a.xyz", "1 2 500\n");
  const ProcessResult result = run({"a.xyz", "--cell", "5"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("region      1, 2, 1, 2\ngrid        1 x 1 cells of 5\n"
                                    "z           500 to 500\n"));
}

TEST_F(BackgroundProcess, SaysWhyThereIsNoBackground) {
  writeFile(dir() / "a.xyz", xyzText(tiltedPlane()));
  expectFailure({"a.xyz", "--cell", "1", "--min-points", "14"},
                "a.xyz: 13 usable points, at least 14 are asked for\n");
  expectFailure({"a.xyz", "--cell", "1", "--region", "0,0,30000,5"},
                "a.xyz: the grid would have 30001 x 6 cells, it may have 1 to 20000 each way; ");
  expectFailure({"a.xyz", "--cell", "1", "--region", "50,50,60,60"},
                "a.xyz: no point is in the region\n");
  writeFile(dir() / "empty.xyz", "");
  expectFailure({"empty.xyz", "--cell", "1"}, "empty.xyz: no points\n");
  writeFile(dir() / "nan.xyz", "nan nan nan\n");
  expectFailure({"nan.xyz", "--cell", "1"}, "nan.xyz: no point is finite\n");
  const std::string whole = plyText(tiltedPlane(), PlyForm::kLittleEndian);
  writeFile(dir() / "cut.ply", whole.substr(0, whole.size() - 100));
  expectFailure({"cut.ply", "--cell", "1"}, "cut.ply: ");
  expectFailure({"a.xyz", "--cell", "1", "-o", "no/where.tiff"}, "cannot write no/where.tiff: ");
}

TEST_F(BackgroundProcess, TellsWrongUsage) {
  writeFile(dir() / "a.xyz", xyzText(tiltedPlane()));
  writeFile(dir() / "d.png", "");
  expectWrongUsage({}, "input is required");
  expectWrongUsage({"a.xyz"}, "--cell is required");
  expectWrongUsage({"gone.xyz", "--cell", "1"}, "gone.xyz");
  expectWrongUsage({"d.png", "--cell", "1"}, "has to be a .ply, .pcd or .xyz file");
  for (const char* cell : {"0", "-1", "nan", "inf", "1e99", "wide"}) {
    expectWrongUsage({"a.xyz", "--cell", cell}, "--cell");
  }
  for (const char* region : {"", "1,2,3", "4,0,0,3", "0,3,4,3", "0,0,nan,3", "0 0 4 3"}) {
    expectWrongUsage({"a.xyz", "--cell", "1", std::string("--region=") + region}, "--region");
  }
  expectWrongUsage({"a.xyz", "--cell", "1", "--min-points", "0"}, "--min-points");
  expectWrongUsage({"a.xyz", "--cell", "1", "-o", "b.png"}, "has to be named .tif or .tiff");
  EXPECT_THAT(run({"--help"}).out, HasSubstr("Example:\n  velmorn background"));
}

} // namespace
} // namespace velmorn::tool
