// The reprojection errors of a camera's shots as a drawing.
#include "velmorn/error_bars_svg.h"

#include <algorithm>
#include <cmath>

#include "velmorn/html_text.h"
#include "velmorn/report_figures.h"
#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

// Of the drawing.
constexpr double kPlotWidth = 460;
constexpr double kPlotHeight = 130;
constexpr double kLeft = 48; // room for the scale
constexpr double kTop = 12;
constexpr double kBelow = 38; // room for the shots' numbers
constexpr double kWidestPitch = 60;
constexpr double kBarShare = 0.62; // of the pitch
constexpr double kCross = 4;       // arm of the cross of a refused shot
constexpr double kNumberPitch = 22;
constexpr int kTicks = 2;

constexpr double kLeastScale = 0.05; // pixels; below, differences say nothing
constexpr double kMostScale = 1e6;

std::string number(double value) { return htmlNumber(value, 1); }

struct Plot {
  double most = 1;
  double pitch = 1;

  double middle(std::size_t shot) const {
    return kLeft + (static_cast<double>(shot) + 0.5) * pitch;
  }
  double y(double error) const { return kTop + kPlotHeight * (1 - std::min(error, most) / most); }
};

std::string textAt(double x, double y, const char* anchor, const std::string& text) {
  return "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" text-anchor=\"" + anchor + "\">" +
         htmlText(text) + "</text>";
}

std::string scaleSvg(const Plot& plot) {
  std::string svg;
  for (int tick = 0; tick <= kTicks; ++tick) {
    const double error = plot.most * tick / kTicks;
    const std::string y = number(plot.y(error));
    svg += "<path class=\"tick\" d=\"M" + number(kLeft) + " " + y + "h" + number(kPlotWidth) +
           "\"/>" + textAt(kLeft - 6, plot.y(error) + 4, "end", shortNumberText(error));
  }
  return svg;
}

std::string barSvg(const Plot& plot, std::size_t index, double error) {
  const double width = plot.pitch * kBarShare;
  return "<rect class=\"bar\" x=\"" + number(plot.middle(index) - width / 2) + "\" y=\"" +
         number(plot.y(error)) + "\" width=\"" + number(width) + "\" height=\"" +
         number(plot.y(0) - plot.y(error)) + "\"/>";
}

std::string crossSvg(const Plot& plot, std::size_t index) {
  const std::string arm = number(2 * kCross);
  const std::string start = number(plot.middle(index) - kCross);
  return "<path class=\"refused\" d=\"M" + start + " " + number(plot.y(0) - 3 * kCross) + "l" +
         arm + " " + arm + "m-" + arm + " 0l" + arm + " -" + arm + "\"/>";
}

std::string shotSvg(const Plot& plot, const ShotRecord& shot, std::size_t index) {
  const bool hasError = shot.found() && std::isfinite(shot.reprojectionError);
  const std::string text =
      hasError ? htmlNumber(shot.reprojectionError, 3) + " px" : refusalText(shot);
  return "<g><title>" + htmlText("Shot " + std::to_string(index + 1) + ": " + text) + "</title>" +
         (hasError ? barSvg(plot, index, shot.reprojectionError) : crossSvg(plot, index)) + "</g>";
}

// Every so many shots, so that their numbers have room.
std::string numbersSvg(const Plot& plot, std::size_t shots) {
  const auto every = static_cast<std::size_t>(std::ceil(kNumberPitch / plot.pitch));
  std::string svg;
  for (std::size_t i = 0; i < shots; i += every) {
    svg += textAt(plot.middle(i), kTop + kPlotHeight + 16, "middle", std::to_string(i + 1));
  }
  return svg + textAt(kLeft, kTop + kPlotHeight + 33, "start", "shot");
}

} // namespace

double errorScale(const StitchRecord& record) {
  double largest = kLeastScale;
  for (const CameraRecord& camera : record.cameras) {
    for (const ShotRecord& shot : camera.shots) {
      if (shot.found() && shot.reprojectionError > largest) largest = shot.reprojectionError;
    }
  }
  return roundNumberAtLeast(std::min(largest, kMostScale));
}

std::string errorBarsSvg(const CameraRecord& camera, double most) {
  if (camera.shots.empty()) return "";
  const double pitch =
      std::min(kWidestPitch, kPlotWidth / static_cast<double>(camera.shots.size()));
  const Plot plot{most, pitch};
  std::string svg =
      "<svg class=\"bars\" role=\"img\" aria-label=\"Reprojection error of each shot of " +
      htmlText(camera.id) + ", pixels\" viewBox=\"0 0 " + number(kLeft + kPlotWidth + 4) + " " +
      number(kTop + kPlotHeight + kBelow) + "\">\n" + scaleSvg(plot);
  for (std::size_t i = 0; i < camera.shots.size(); ++i) svg += shotSvg(plot, camera.shots[i], i);
  return svg + numbersSvg(plot, camera.shots.size()) + "</svg>\n";
}

} // namespace velmorn::tool
