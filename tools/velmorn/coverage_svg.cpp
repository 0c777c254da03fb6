// The map of where in a camera's image the board was seen.
#include "velmorn/coverage_svg.h"

#include <algorithm>
#include <cmath>

#include "velmorn/html_text.h"

namespace velmorn::tool {
namespace {

constexpr double kLongerSide = 320; // of the drawing
constexpr int kShades = 4;          // the last one is for so many shots and more

std::string number(double value) { return htmlNumber(value, 1); }

// Runs of equal cells as one rectangle each.
std::string cellsSvg(const cv::Mat& shots, double cellWidth, double cellHeight) {
  std::string svg;
  for (int row = 0; row < shots.rows; ++row) {
    for (int from = 0, to = 0; from < shots.cols; from = to) {
      const auto shadeAt = [&](int column) {
        return std::min(kShades, shots.at<int>(row, column));
      };
      while (to < shots.cols && shadeAt(to) == shadeAt(from)) ++to;
      if (shadeAt(from) == 0) continue;
      svg += "<rect class=\"shade-" + std::to_string(shadeAt(from)) + "\" x=\"" +
             number(from * cellWidth) + "\" y=\"" + number(row * cellHeight) + "\" width=\"" +
             number((to - from) * cellWidth) + "\" height=\"" + number(cellHeight) + "\"/>";
    }
  }
  return svg;
}

bool isInside(const cv::Point2d& corner, cv::Size image) {
  return corner.x >= -0.5 && corner.y >= -0.5 && corner.x <= image.width - 0.5 &&
         corner.y <= image.height - 0.5;
}

// One path of points; round line ends make them dots.
std::string cornersSvg(const CameraRecord& camera, double scale) {
  std::string path;
  for (const ShotRecord& shot : camera.shots) {
    for (const cv::Point2d& corner : shot.corners) {
      if (!isInside(corner, camera.imageSize)) continue;
      path +=
          "M" + number((corner.x + 0.5) * scale) + " " + number((corner.y + 0.5) * scale) + "h0";
    }
  }
  return "<path class=\"corners\" d=\"" + path + "\"/>";
}

} // namespace

std::string coverageSvg(const CameraRecord& camera, const Coverage& coverage) {
  if (coverage.shots.empty()) return "";
  const double scale = kLongerSide / std::max(camera.imageSize.width, camera.imageSize.height);
  const double width = std::max(1.0, camera.imageSize.width * scale);
  const double height = std::max(1.0, camera.imageSize.height * scale);
  const std::string sides = "width=\"" + number(width) + "\" height=\"" + number(height) + "\"";
  return "<svg class=\"coverage\" role=\"img\" aria-label=\"Where in the image of " +
         htmlText(camera.id) + " the board was seen: " + htmlNumber(coverage.percent, 0) +
         " % of the image\" " + sides + " viewBox=\"0 0 " + number(width) + " " + number(height) +
         "\"><rect class=\"image\" " + sides + "/>" +
         cellsSvg(coverage.shots, width / coverage.shots.cols, height / coverage.shots.rows) +
         cornersSvg(camera, scale) + "</svg>\n";
}

} // namespace velmorn::tool
