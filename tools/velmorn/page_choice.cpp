// The page that a board is printed on.
#include "velmorn/page_choice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "velmorn/grey_image.h"
#include "velmorn/sheet_footer.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr const char* kLargestPage = "largest page";
constexpr double kRounding = 1e-6;      // mm
constexpr double kSquareSizeStep = 0.1; // mm

// Pattern, footer and white paper around them.
cv::Size2d pageNeeded(const PrintedBoard& board, int modules, double width) {
  const double margin = board.clearance();
  const cv::Size2d pattern = board.patternSize();
  const cv::Size2d footer =
      footerOf(board, modules, std::max(pattern.width, width - 2 * margin)).size;
  return {std::max(pattern.width, footer.width) + 2 * margin,
          pattern.height + footer.height + 3 * margin};
}

bool fits(const PrintedBoard& board, int modules, const cv::Size2d& page) {
  const cv::Size2d needed = pageNeeded(board, modules, page.width);
  return needed.width <= page.width + kRounding && needed.height <= page.height + kRounding;
}

// The paper in both directions, the one like the board first.
std::array<cv::Size2d, 2> directions(const PrintedBoard& board, const Paper& paper) {
  const cv::Size2d turned(paper.size.height, paper.size.width);
  const bool isWide = board.spec.columns > board.spec.rows;
  const bool isPaperWide = paper.size.width > paper.size.height;
  if (isWide == isPaperWide) return {paper.size, turned};
  return {turned, paper.size};
}

bool fitsPaper(const PrintedBoard& board, int modules, const Paper& paper) {
  const auto pages = directions(board, paper);
  return std::any_of(pages.begin(), pages.end(),
                     [&](const cv::Size2d& page) { return fits(board, modules, page); });
}

// The most squares of this size on a page, not more than asked for. Nothing when not even the
// smallest board fits.
std::optional<PrintedBoard> mostSquares(PrintedBoard board, int modules, const cv::Size2d& page) {
  const cv::Size asked(board.spec.columns, board.spec.rows);
  board.spec.columns = board.spec.rows = board.minSquares();
  if (!fits(board, modules, page)) return std::nullopt;
  const auto grow = [&](int& side, int most) {
    while (side < most && fits(board, modules, page)) ++side;
    if (!fits(board, modules, page)) --side;
  };
  grow(board.spec.columns, asked.width);
  grow(board.spec.rows, asked.height);
  return board;
}

std::string squaresAdvice(const PrintedBoard& board, int modules, const Paper& paper) {
  cv::Size best;
  for (const cv::Size2d& page : directions(board, paper)) {
    const auto most = mostSquares(board, modules, page);
    if (most && most->spec.columns * most->spec.rows > best.area())
      best = {most->spec.columns, most->spec.rows};
  }
  if (best.empty()) return "";
  return "it holds " + sizeText(best) + " squares of this size";
}

std::string sizeAdvice(PrintedBoard board, int modules, const Paper& paper) {
  const std::string asked = sizeText({board.spec.columns, board.spec.rows});
  auto steps = static_cast<int>(std::floor(board.spec.square / kSquareSizeStep));
  for (; steps * kSquareSizeStep >= kMinSquare; --steps) {
    board.spec.square = steps * kSquareSizeStep;
    if (fitsPaper(board, modules, paper))
      return asked + " squares of " + shortText(board.spec.square) + " mm";
  }
  return "";
}

[[noreturn]] void refuse(const PrintedBoard& board, int modules, const Paper& paper,
                         const cv::Size2d& needed) {
  const std::string squares = squaresAdvice(board, modules, paper);
  const std::string size = sizeAdvice(board, modules, paper);
  std::string advice = squares + (squares.empty() || size.empty() ? "" : ", or ");
  advice += squares.empty() && !size.empty() ? "it holds " + size : size;
  throw ToolError("the board needs " + sizeInMillimetres(needed) +
                  " with its margins and the lines below it, " +
                  (paper.name == kLargestPage ? "a page is at most " : "the paper is ") +
                  sizeInMillimetres(paper.size) + (advice.empty() ? "" : "; " + advice));
}

} // namespace

cv::Size2d choosePage(const PrintedBoard& board, int modules, const Paper& paper) {
  const cv::Size2d needed = pageNeeded(board, modules, 0);
  if (paper.isMadeToFit()) {
    const Paper largest{kLargestPage, {kMaxPage, kMaxPage}};
    if (!fitsPaper(board, modules, largest)) refuse(board, modules, largest, needed);
    return needed;
  }
  for (const cv::Size2d& page : directions(board, paper))
    if (fits(board, modules, page)) return page;
  refuse(board, modules, paper, needed);
}

} // namespace velmorn::tool
