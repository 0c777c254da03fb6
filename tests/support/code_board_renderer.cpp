// Images of data-code boards with known truth.
#include "support/code_board_renderer.h"

#include <cmath>

namespace velmorn {
namespace {

constexpr float kQuietMargin = 1; // white paper around the pattern, squares

// The board in units of squares, origin at the outer corner of square (1, 1).
class CodeBoardPicture : public PlanePicture {
 public:
  CodeBoardPicture(const tool::CodeBoardSpec& board, const tool::CodeBoardSymbols& symbols)
      : board_(board), symbols_(symbols) {}

  int area(const cv::Vec2f& p) const override {
    constexpr float kRim = static_cast<float>(tool::kPlainRim);
    if (!within(p, kRim + kQuietMargin)) return kOutside;
    if (!within(p, kRim)) return kPaper;
    const int a = static_cast<int>(std::floor(p[0])) + 1;
    const int b = static_cast<int>(std::floor(p[1])) + 1;
    return (b * kMaxColumns + a) * kMaxModules + moduleNumber(p, a, b);
  }

  float shade(int area) const override {
    if (area == kOutside) return kRenderedBackground;
    if (area == kPaper) return kRenderedWhite;
    const int square = area / kMaxModules, module = area % kMaxModules;
    const int a = square % kMaxColumns, b = square / kMaxColumns;
    if (!tool::isWhiteSquare(a, b)) return kRenderedBlack;
    if (module == kNoModule) return kRenderedWhite;
    const int row = (module - 1) / symbols_.modules(), column = (module - 1) % symbols_.modules();
    return symbols_.isDark(a, b, row, column) ? kRenderedBlack : kRenderedWhite;
  }

 private:
  static constexpr int kOutside = -2;
  static constexpr int kPaper = -1;
  static constexpr int kNoModule = 0;
  static constexpr int kMaxColumns = 512;
  static constexpr int kMaxModules = 1025; // 32 x 32, and none

  bool within(const cv::Vec2f& p, float margin) const {
    return p[0] >= -margin && p[0] < static_cast<float>(board_.columns) + margin &&
           p[1] >= -margin && p[1] < static_cast<float>(board_.rows) + margin;
  }

  int moduleNumber(const cv::Vec2f& p, int a, int b) const {
    const bool isCoded =
        a >= 1 && a <= board_.columns && b >= 1 && b <= board_.rows && tool::isWhiteSquare(a, b);
    if (!isCoded) return kNoModule;
    const int column = moduleAlong(p[0] - static_cast<float>(a - 1));
    const int row = moduleAlong(p[1] - static_cast<float>(b - 1));
    return column < 0 || row < 0 ? kNoModule : row * symbols_.modules() + column + 1;
  }

  int moduleAlong(float inSquare) const {
    constexpr float kShare = static_cast<float>(tool::kCodeShare);
    const float inCode = (inSquare - (1 - kShare) / 2) / kShare;
    if (!(inCode >= 0 && inCode < 1)) return -1;
    return static_cast<int>(inCode * static_cast<float>(symbols_.modules()));
  }

  const tool::CodeBoardSpec& board_;
  const tool::CodeBoardSymbols& symbols_;
};

// Before the camera, and not so far off its axis that the lens's polynomial folds it back.
bool facesCamera(const cv::Matx44d& camFromBoard, const cv::Point2f& onBoard) {
  constexpr double kLargestTangent = 0.9;
  const cv::Vec4d p = camFromBoard * cv::Vec4d(static_cast<double>(onBoard.x),
                                               static_cast<double>(onBoard.y), 0, 1);
  return p[2] > 0 && std::hypot(p[0], p[1]) < kLargestTangent * p[2];
}

} // namespace

std::vector<CodeBoardCorner> visibleCodeBoardCorners(const CameraModel& camera,
                                                     const tool::CodeBoardSpec& board,
                                                     const cv::Matx44d& camFromBoard,
                                                     double margin) {
  std::vector<CodeBoardCorner> corners;
  for (int row = 0; row <= board.rows; ++row)
    for (int column = 0; column <= board.columns; ++column) {
      CodeBoardCorner corner;
      corner.column = column;
      corner.row = row;
      corner.onBoard = cv::Point2f(static_cast<float>(column * board.square),
                                   static_cast<float>(row * board.square));
      if (!facesCamera(camFromBoard, corner.onBoard)) continue;
      corner.pixel =
          projectPoints(camera, camFromBoard, {{corner.onBoard.x, corner.onBoard.y, 0.0F}}).front();
      const double x = static_cast<double>(corner.pixel.x), y = static_cast<double>(corner.pixel.y);
      if (x >= margin && y >= margin && x <= camera.imageSize.width - 1 - margin &&
          y <= camera.imageSize.height - 1 - margin)
        corners.push_back(corner);
    }
  return corners;
}

CodeBoardRenderer::CodeBoardRenderer(const CameraModel& camera) : renderer_(camera) {}

cv::Mat CodeBoardRenderer::render(const tool::CodeBoardSpec& board,
                                  const tool::CodeBoardSymbols& symbols,
                                  const cv::Matx44d& camFromBoard,
                                  const ImageEffects& effects) const {
  return finishImage(renderPlain(board, symbols, camFromBoard), effects);
}

cv::Mat_<float> CodeBoardRenderer::renderPlain(const tool::CodeBoardSpec& board,
                                               const tool::CodeBoardSymbols& symbols,
                                               const cv::Matx44d& camFromBoard) const {
  return renderer_.render(CodeBoardPicture(board, symbols), board.square, camFromBoard);
}

} // namespace velmorn
