// Where the parts of a printed board are, and what fits on a page.
#include "velmorn/board_sheet.h"

#include <gmock/gmock.h>

#include <cmath>

#include "tools/expect_tool_error.h"
#include "velmorn/page_choice.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;

PrintedBoard codeBoard(int columns, int rows, double square) {
  return {{columns, rows, square}, false};
}

PrintedBoard plainBoard(int columns, int rows, double square) {
  return {{columns, rows, square}, true};
}

// Whether there is ink at a place given in squares from the board's origin.
bool isInked(const BoardSheet& sheet, double square, double x, double y) {
  const double atX = sheet.origin.x + x * square, atY = sheet.origin.y + y * square;
  for (const InkBox& box : sheet.pattern)
    if (atX > box.left && atX < box.right && atY > box.top && atY < box.bottom) return true;
  return false;
}

double inkedArea(const BoardSheet& sheet) {
  double area = 0;
  for (const InkBox& box : sheet.pattern) area += (box.right - box.left) * (box.bottom - box.top);
  return area;
}

TEST(BoardSheet, EveryModuleIsWhereTheCodeHasIt) {
  const PrintedBoard board = codeBoard(3, 4, 20);
  const CodeBoardSymbols symbols(board.spec);
  const BoardSheet sheet = layOut(board, *parsePaper("fit"));
  ASSERT_EQ(sheet.modules, symbols.modules());
  for (int b = 1; b <= 4; ++b)
    for (int a = 1; a <= 3; ++a) {
      EXPECT_EQ(isInked(sheet, 20, a - 0.95, b - 0.95), !isWhiteSquare(a, b));
      if (!isWhiteSquare(a, b)) continue;
      for (int row = 0; row < symbols.modules(); ++row)
        for (int column = 0; column < symbols.modules(); ++column) {
          const double x = a - 1 + 0.125 + 0.75 * (column + 0.5) / symbols.modules();
          const double y = b - 1 + 0.125 + 0.75 * (row + 0.5) / symbols.modules();
          ASSERT_EQ(isInked(sheet, 20, x, y), symbols.isDark(a, b, row, column))
              << a << ' ' << b << ' ' << row << ' ' << column;
        }
    }
}

TEST(BoardSheet, ThePatternGoesOnForHalfASquare) {
  const BoardSheet sheet = layOut(codeBoard(4, 3, 10), *parsePaper("fit"));
  for (int a = 0; a <= 5; ++a)
    for (const double y : {-0.25, 3.25}) {
      const double x = a == 0 ? -0.25 : a == 5 ? 4.25 : a - 0.5;
      EXPECT_EQ(isInked(sheet, 10, x, y), !isWhiteSquare(a, y < 0 ? 0 : 4)) << a << ' ' << y;
    }
  for (int a = 1; a <= 4; ++a) {
    EXPECT_FALSE(isInked(sheet, 10, a - 0.5, -0.51));
    EXPECT_FALSE(isInked(sheet, 10, a - 0.5, 3.51));
  }
}

TEST(BoardSheet, PlainBoardHasWholeSquaresOnly) {
  const BoardSheet sheet = layOut(plainBoard(5, 4, 30), *parsePaper("fit"));
  EXPECT_EQ(sheet.modules, 0);
  EXPECT_EQ(sheet.pattern.size(), 10U);
  EXPECT_NEAR(inkedArea(sheet), 10 * 900, 1e-9);
  EXPECT_TRUE(isInked(sheet, 30, 0.5, 0.5));
  EXPECT_FALSE(isInked(sheet, 30, 1.5, 0.5));
  EXPECT_EQ(sheet.lines[1].text, "plain chessboard, 5x4 squares of 30 mm");
  EXPECT_EQ(sheet.lines[2].text, "4x3 inner corners");
}

TEST(BoardSheet, EverythingIsOnThePage) {
  for (const PrintedBoard& board : {codeBoard(2, 2, 1), codeBoard(20, 14, 20), codeBoard(3, 30, 7),
                                    plainBoard(4, 4, 1), plainBoard(10, 7, 25.4)}) {
    const BoardSheet sheet = layOut(board, *parsePaper("fit"));
    for (const InkBox& box : sheet.pattern) {
      EXPECT_GE(box.left, 5 - 1e-9);
      EXPECT_GE(box.top, 5 - 1e-9);
      EXPECT_LE(box.right, sheet.page.width - 5 + 1e-9);
      EXPECT_LE(box.bottom, sheet.bar.top);
    }
    EXPECT_GE(sheet.bar.left, 5 - 1e-9);
    EXPECT_LE(sheet.lines.back().start.y, sheet.page.height - 5);
  }
}

TEST(BoardSheet, TheBarIsAsLongAsItSays) {
  for (const auto& [columns, bar] :
       {std::pair(20, 100.0), std::pair(6, 50.0), std::pair(2, 20.0)}) {
    const BoardSheet sheet = layOut(codeBoard(columns, 4, 20), *parsePaper("fit"));
    EXPECT_NEAR(sheet.bar.right - sheet.bar.left, bar, 1e-9) << columns;
    EXPECT_EQ(sheet.lines[0].text, "bar " + shortText(bar) + " mm, print at 100 %");
  }
}

TEST(BoardSheet, TheCodesHoldTheSizeInMillimetres) {
  const BoardSheet sheet = layOut(codeBoard(4, 4, *parseMillimetres("1in")), *parsePaper("fit"));
  EXPECT_EQ(sheet.modules, CodeBoardSymbols({4, 4, 25.4}).modules());
  EXPECT_EQ(sheet.lines[1].text, "data-code board, 4x4 squares of 25.4 mm");
}

TEST(PageChoice, TurnsThePaper) {
  EXPECT_EQ(choosePage(codeBoard(13, 8, 20), 12, *parsePaper("a4")), cv::Size2d(297, 210));
  EXPECT_EQ(choosePage(codeBoard(9, 12, 20), 12, *parsePaper("a4")), cv::Size2d(210, 297));
  EXPECT_EQ(choosePage(codeBoard(9, 12, 20), 12, *parsePaper("297x210")), cv::Size2d(210, 297));
  // Like the board when both directions would do.
  EXPECT_EQ(choosePage(codeBoard(5, 4, 20), 12, *parsePaper("a4")), cv::Size2d(297, 210));
}

TEST(PageChoice, SaysWhatThePaperHolds) {
  const std::string refusal =
      toolError([] { choosePage(codeBoard(20, 14, 20), 12, *parsePaper("a4")); });
  EXPECT_THAT(refusal,
              AllOf(HasSubstr("the paper is 210x297 mm"), HasSubstr("9x12 squares of this size"),
                    HasSubstr("20x14 squares of ")));
  // What is named fits, and a little more does not.
  EXPECT_NO_THROW(choosePage(codeBoard(9, 12, 20), 12, *parsePaper("a4")));
  EXPECT_THROW(choosePage(codeBoard(10, 12, 20), 12, *parsePaper("a4")), ToolError);
  const double size = std::stod(refusal.substr(refusal.find("20x14 squares of ") + 17));
  EXPECT_NO_THROW(choosePage(codeBoard(20, 14, size), 12, *parsePaper("a4")));
  EXPECT_THROW(choosePage(codeBoard(20, 14, size + 0.1), 12, *parsePaper("a4")), ToolError);
}

TEST(PageChoice, SaysOnlyThatItDoesNotFitWhenNothingDoes) {
  const std::string refusal =
      toolError([] { choosePage(codeBoard(20, 14, 20), 12, *parsePaper("10x10")); });
  EXPECT_THAT(refusal, testing::EndsWith("the paper is 10x10 mm"));
}

TEST(PageChoice, KnowsTheLargestPage) {
  EXPECT_THAT(toolError([] { choosePage(codeBoard(200, 200, 1000), 14, *parsePaper("fit")); }),
              HasSubstr("a page is at most 5080x5080 mm"));
}

} // namespace
} // namespace velmorn::tool
