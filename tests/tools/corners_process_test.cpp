// `velmorn corners`, run as a process on rendered images.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include <opencv2/imgcodecs.hpp>

#include "support/code_board_renderer.h"
#include "support/real_images.h"
#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class CornersProcess : public TempDirTest {
 protected:
  ProcessResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "corners");
    return runProcess(VELMORN_TOOL, arguments, dir());
  }
  void expectFailure(const std::vector<std::string>& arguments, const std::string& message) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 1) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "velmorn: " + message + "\n");
  }
  void expectWrongUsage(const std::vector<std::string>& arguments, const std::string& message) {
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << message;
    EXPECT_THAT(result.err, HasSubstr(message));
  }

  // A board of 12x9 squares of 20 mm, seen whole.
  void writeShot(const std::string& name) {
    camFromBoard_ = cv::Matx44d(1, 0, 0, -120, 0, 1, 0, -90, 0, 0, 1, 300, 0, 0, 0, 1);
    const CodeBoardSymbols symbols(board_);
    ImageEffects effects;
    effects.blurSigma = 0.8;
    effects.noiseSigma = 3;
    cv::imwrite((dir() / name).string(),
                CodeBoardRenderer(camera_).render(board_, symbols, camFromBoard_, effects));
  }

  CodeBoardSpec board_{12, 9, 20};
  CameraModel camera_ = plainCamera({1280, 960}, 1200);
  cv::Matx44d camFromBoard_;
};

TEST_F(CornersProcess, ListsWritesAndDraws) {
  writeShot("shot.png");
  const ProcessResult result = run({"shot.png", "--csv", "c.csv", "-o", "seen.png"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, AllOf(StartsWith("code        "), HasSubstr("square      20\n"),
                                HasSubstr("corners     130, columns 0 to 12, rows 0 to 9\n"
                                          "column  row          x          y\n     0    0 "),
                                HasSubstr("and 120 more; --all lists them\n"),
                                HasSubstr("written to  c.csv\nwritten to  seen.png\n")));
  EXPECT_EQ(cv::imread((dir() / "seen.png").string()).size(), cv::Size(1280, 960));

  std::istringstream lines(readFile(dir() / "c.csv"));
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, "column,row,x,y");
  const auto truth = visibleCodeBoardCorners(camera_, board_, camFromBoard_, 0);
  ASSERT_EQ(truth.size(), 130U);
  for (const CodeBoardCorner& corner : truth) {
    int column = -1, row = -1;
    float x = 0, y = 0;
    char comma = 0;
    lines >> column >> comma >> row >> comma >> x >> comma >> y;
    EXPECT_EQ(column, corner.column);
    EXPECT_EQ(row, corner.row);
    EXPECT_NEAR(x, corner.pixel.x, 0.1);
    EXPECT_NEAR(y, corner.pixel.y, 0.1);
  }
}

TEST_F(CornersProcess, FindsABoardInThePrintersPicture) {
  const ProcessResult printed = runProcess(
      VELMORN_TOOL, {"board", "--squares", "6x4", "--size", "20mm", "-o", "board.png"}, dir());
  ASSERT_THAT(printed.out, HasSubstr("304.8 dpi"));
  const ProcessResult result = run({"board.png", "--csv", "c.csv"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("corners     35, columns 0 to 6, rows 0 to 4\n"));
  // 12 pixels per millimetre, and every corner between four pixels.
  std::istringstream lines(readFile(dir() / "c.csv"));
  std::string line;
  std::getline(lines, line);
  int column = 0, row = 0;
  double x = 0, y = 0, firstX = 0, firstY = 0;
  for (char comma = 0; lines >> column >> comma >> row >> comma >> x >> comma >> y;) {
    if (column == 0 && row == 0) {
      firstX = std::round(x + 0.5) - 0.5;
      firstY = std::round(y + 0.5) - 0.5;
    }
    EXPECT_NEAR(x, firstX + 240 * column, 0.05);
    EXPECT_NEAR(y, firstY + 240 * row, 0.05);
  }
}

TEST_F(CornersProcess, ListsAllWhenAsked) {
  writeShot("shot.png");
  const std::string out = run({"shot.png", "--all"}).out;
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 4 + 130);
  EXPECT_EQ(fs::exists(dir() / "c.csv"), false);
}

TEST_F(CornersProcess, TakesAPlainBoard) {
  const ProcessResult result = run({stereoSet().left[0], "--board", "9x6", "-o", "seen.jpg"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, StartsWith("corners     54, columns 0 to 8, rows 0 to 5\n"));
  EXPECT_TRUE(fs::exists(dir() / "seen.jpg"));
}

TEST_F(CornersProcess, SaysWhyThereAreNone) {
  writeFile(dir() / "broken.png", "no image");
  expectFailure({"broken.png"}, "broken.png: not readable as an image");
  cv::imwrite((dir() / "grey.png").string(), cv::Mat(480, 640, CV_8UC1, cv::Scalar(128)));
  writeFile(dir() / "seen.png", "as it was");
  expectFailure({"grey.png", "-o", "seen.png"}, "grey.png: no data code found");
  EXPECT_EQ(readFile(dir() / "seen.png"), "as it was");
  expectFailure({"grey.png", "--board", "9x6"}, "grey.png: no board with 9x6 inner corners found");
  EXPECT_THAT(run({"grey.png", "-o", "no/where.png"}).err,
              StartsWith("velmorn: cannot write no/where.png"));
  EXPECT_THAT(run({"grey.png", "--csv", "no/where.csv"}).err,
              StartsWith("velmorn: cannot write no/where.csv"));
}

TEST_F(CornersProcess, TellsWrongUsage) {
  writeFile(dir() / "a.png", "");
  expectWrongUsage({}, "image is required");
  expectWrongUsage({"gone.png"}, "gone.png");
  expectWrongUsage({"a.png", "-o", "seen.pdf"}, "has to be a .png, .jpg, .bmp or .tif file");
  expectWrongUsage({"a.png", "--board", "9x2"}, "each 3 to 1000");
}

} // namespace
} // namespace velmorn::tool
