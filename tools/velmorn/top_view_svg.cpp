// The rig from above as a drawing.
#include "velmorn/top_view_svg.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "velmorn/html_text.h"
#include "velmorn/pose.h"
#include "velmorn/report_style.h"
#include "velmorn/round_numbers.h"

namespace velmorn::tool {
namespace {

constexpr double kWidth = 760; // of the drawing, at most
constexpr double kHeight = 460;
constexpr double kMargin = 0.4;    // around everything, in depths of a frustum
constexpr double kMostCells = 100; // along one side
constexpr std::size_t kMostCharacters = 24;
constexpr double kLineHeight = 16;

std::string number(double value) { return htmlNumber(value, 1); }

std::string at(const cv::Point2d& place) { return number(place.x) + " " + number(place.y); }

// From the view's frame to the drawing.
class Sheet {
 public:
  explicit Sheet(const ReportFrame& frame) : frame_(frame) {
    const double margin = kMargin * frame.frustumDepth;
    least_ = {frame.least[0] - margin, frame.least[2] - margin};
    most_ = {frame.most[0] + margin, frame.most[2] + margin};
    scale_ = std::min(kWidth / (most_.x - least_.x), kHeight / (most_.y - least_.y));
  }

  cv::Point2d place(const cv::Vec3d& inBase) const {
    const cv::Vec3d point = inView(frame_, inBase);
    return cv::Point2d(point[0] - least_.x, point[2] - least_.y) * scale_;
  }

  cv::Point2d size() const { return (most_ - least_) * scale_; }

  std::string grid() const {
    if (size().x > kMostCells * frame_.cell * scale_) return "";
    std::string path;
    for (const double x : multiplesWithin(least_.x, most_.x, frame_.cell))
      path += "M" + number((x - least_.x) * scale_) + " 0v" + number(size().y);
    for (const double z : multiplesWithin(least_.y, most_.y, frame_.cell))
      path += "M0 " + number((z - least_.y) * scale_) + "h" + number(size().x);
    return "<path class=\"grid\" d=\"" + path + "\"/>\n";
  }

 private:
  ReportFrame frame_;
  cv::Point2d least_;
  cv::Point2d most_;
  double scale_ = 1;
};

std::string outline(const std::vector<cv::Point2d>& places) {
  std::string path;
  for (const cv::Point2d& place : places) path += (path.empty() ? "M" : "L") + at(place);
  return path + "z";
}

std::string boardSvg(const Sheet& sheet, const ModelBoard& board) {
  std::vector<cv::Point2d> places;
  for (const cv::Vec3d& corner : board.outline) places.push_back(sheet.place(corner));
  return "<path class=\"board " + cameraClass(board.camera) + "\" d=\"" + outline(places) +
         "\"/>\n";
}

std::string cameraSvg(const Sheet& sheet, const ModelCamera& camera, double depth) {
  const cv::Point2d tip = sheet.place(translationOf(camera.baseFromCam));
  std::vector<cv::Point2d> image;
  std::string edges;
  for (const cv::Point2d& corner : camera.corners) {
    image.push_back(sheet.place(imagePlace(camera, corner, depth)));
    edges += "M" + at(tip) + "L" + at(image.back());
  }
  return "<path class=\"frustum " + cameraClass(camera.camera) + "\" d=\"" + outline(image) +
         edges + "\"/>\n";
}

// Written last, over all lines; one that would lie on an earlier one moves below it.
std::string namesSvg(const Sheet& sheet, const StitchRecord& record, const ReportModel& model) {
  std::string svg;
  std::vector<cv::Point2d> taken;
  for (const ModelCamera& camera : model.cameras) {
    cv::Point2d place = sheet.place(translationOf(camera.baseFromCam)) - cv::Point2d(0, 8);
    const auto collides = [&](const cv::Point2d& other) {
      return std::abs(other.x - place.x) < 6 * kLineHeight &&
             std::abs(other.y - place.y) < kLineHeight;
    };
    while (std::any_of(taken.begin(), taken.end(), collides)) place.y += kLineHeight;
    taken.push_back(place);
    const CameraRecord& recorded = record.cameras[camera.camera];
    svg += "<text class=\"name\" text-anchor=\"middle\" x=\"" + number(place.x) + "\" y=\"" +
           number(place.y) + "\">" + htmlText(shortenedText(recorded.id, kMostCharacters)) +
           (recorded.isBase ? " (base)" : "") + "</text>\n";
  }
  return svg;
}

} // namespace

std::string topViewSvg(const StitchRecord& record, const ReportModel& model,
                       const ReportFrame& frame) {
  const Sheet sheet(frame);
  std::string svg =
      "<svg class=\"top-view\" role=\"img\" aria-label=\"The rig from above\" "
      "viewBox=\"0 0 " +
      at(sheet.size()) + "\">\n" + sheet.grid();
  for (const ModelBoard& board : model.boards) svg += boardSvg(sheet, board);
  for (const ModelCamera& camera : model.cameras)
    svg += cameraSvg(sheet, camera, frame.frustumDepth);
  return svg + namesSvg(sheet, record, model) + "</svg>\n";
}

} // namespace velmorn::tool
