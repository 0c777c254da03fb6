// The corners of a board in one image, numbered, and drawn.
#include "velmorn/grid_corners.h"

#include <gmock/gmock.h>

#include "support/board_renderer.h"
#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "velmorn/corner_picture.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

// Four corners around square (3, 2) of 20 and one more, not in order.
DataCodeView sampleView() {
  DataCodeView view;
  view.code = "3,2,20";
  view.onBoard = {{60, 40, 0}, {40, 20, 0}, {60, 20, 0}, {40, 40, 0}, {80, 20, 0}};
  for (const cv::Point3f& p : view.onBoard) view.pixels.emplace_back(2 * p.x, 3 * p.y);
  return view;
}

TEST(GridCorners, AreNumberedRowByRow) {
  const GridCorners found = numberCorners(sampleView());
  EXPECT_EQ(found.code, "3,2,20");
  EXPECT_EQ(found.square, 20);
  ASSERT_EQ(found.corners.size(), 5U);
  EXPECT_EQ(found.corners[0].column, 2);
  EXPECT_EQ(found.corners[0].row, 1);
  EXPECT_EQ(found.corners[0].pixel, cv::Point2f(80, 60));
  EXPECT_EQ(found.corners[2].column, 4);
  EXPECT_EQ(found.corners[4].column, 3);
  EXPECT_EQ(found.corners[4].row, 2);
}

TEST(GridCorners, KnowTheCodesSquare) {
  using testing::ElementsAre;
  EXPECT_THAT(numberCorners(sampleView()).codeSquare,
              ElementsAre(cv::Point2f(80, 60), cv::Point2f(120, 60), cv::Point2f(120, 120),
                          cv::Point2f(80, 120)));
  DataCodeView view = sampleView();
  view.onBoard.erase(view.onBoard.begin());
  view.pixels.erase(view.pixels.begin());
  EXPECT_TRUE(numberCorners(view).codeSquare.empty());
}

TEST(GridCorners, NeedASquareSize) {
  for (const char* code : {"", "hello", "3,2", "3,2,0", "3,2,-20", "3,2,nan", "3,2,inf"}) {
    DataCodeView view = sampleView();
    view.code = code;
    EXPECT_THAT(toolError([&] { numberCorners(view); }), HasSubstr("how large a square is"));
  }
  DataCodeView view = sampleView();
  view.problem = "no data code found";
  EXPECT_EQ(toolError([&] { numberCorners(view); }), "no data code found");
}

TEST(GridCorners, TakeOddNumbers) {
  DataCodeView view = sampleView();
  view.code = "2147483647,-2147483648,20";
  view.onBoard[0] = {1e30F, -1e30F, 0};
  EXPECT_NO_THROW(numberCorners(view));
}

TEST(CodeIn, TakesTheTextOffTheConsole) {
  const std::string numbers = "\nparsed code content is (3,2),(20.000000,20.000000)\n";
  EXPECT_EQ(codeIn("finded code is 3,2,20" + numbers), "3,2,20");
  EXPECT_EQ(codeIn("finded code is 3,2,20" + numbers +
                   "calibCornerExtractExt failed.return value is -14\n"),
            "3,2,20");
  EXPECT_EQ(codeIn("find data code failed\n"), "");
  EXPECT_EQ(codeIn("dcProcess failed.return value is -2\n"), "");
  EXPECT_EQ(codeIn(""), "");
}

TEST(CodeIn, TakesAnyText) {
  const std::string numbers = "\nparsed code content is (0,0),(0.000000,0.000000)\n";
  for (const std::string& code :
       {std::string("a\nfind data code failed\n"), std::string("x" + numbers), std::string(" "),
        std::string("%s%n")})
    EXPECT_EQ(codeIn("finded code is " + code + numbers), code);
}

class ViewOfAnImage : public TempDirTest {};

TEST_F(ViewOfAnImage, SaysWhyItHasNoCorners) {
  EXPECT_EQ(findDataCodeBoard(cv::Mat()).problem, "not readable as an image");
  EXPECT_EQ(findDataCodeBoard(cv::Mat(480, 640, CV_8UC1, cv::Scalar(128))).problem,
            "no data code found");
  EXPECT_EQ(toolError([] { findDataCodeCorners(cv::Mat(9, 9, CV_8UC1, cv::Scalar(0))); }),
            "no data code found");
}

TEST_F(ViewOfAnImage, KeepsTheConsoleQuiet) {
  const ConsoleCapture console;
  findDataCodeBoard(cv::Mat(480, 640, CV_8UC1, cv::Scalar(128)));
  EXPECT_EQ(console.text(), "");
}

TEST(GridCorners, OfAPlainBoard) {
  const CameraModel camera = plainCamera({640, 480}, 600);
  const BoardSpec board;
  cv::Matx44d camFromBoard = cv::Matx44d::eye();
  camFromBoard(0, 3) = -100;
  camFromBoard(1, 3) = -60;
  camFromBoard(2, 3) = 300;
  const cv::Mat grey = BoardRenderer(camera).render(board, camFromBoard);
  const GridCorners found = findPlainCorners(grey, {9, 6});
  ASSERT_EQ(found.corners.size(), 54U);
  EXPECT_EQ(found.corners[10].column, 1);
  EXPECT_EQ(found.corners[10].row, 1);
  EXPECT_TRUE(found.code.empty());
  EXPECT_EQ(toolError([&] {
              findPlainCorners(grey, {8, 5});
            }),
            "no board with 8x5 inner corners found");
}

TEST(CornerPicture, ShowsCornersAndSquare) {
  const cv::Mat grey(200, 300, CV_8UC1, cv::Scalar(255));
  const cv::Mat picture = drawCorners(grey, numberCorners(sampleView()));
  ASSERT_EQ(picture.type(), CV_8UC3);
  ASSERT_EQ(picture.size(), grey.size());
  const auto at = [&](int x, int y) { return picture.at<cv::Vec3b>(y, x); };
  EXPECT_LT(at(160, 60)[2], 100); // a cross, green
  EXPECT_GT(at(160, 60)[1], 150);
  EXPECT_GT(at(100, 60)[0], 200); // the square's upper side, blue
  EXPECT_LT(at(100, 60)[2], 100);
  EXPECT_EQ(at(250, 150), cv::Vec3b(255, 255, 255));
}

TEST(CornerPicture, TakesPicturesNamesOnly) {
  for (const char* name : {"a.png", "b.jpg", "c.jpeg", "d.bmp", "e.tif", "f.x.tiff"})
    EXPECT_TRUE(isPictureName(name)) << name;
  for (const char* name : {"", "png", "a", "a.pdf", "a.png.txt", ".png"})
    EXPECT_FALSE(isPictureName(name)) << name;
}

} // namespace
} // namespace velmorn::tool
