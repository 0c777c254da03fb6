// The areas that a vector drawing fills.
#include "tools/drawn_boxes.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include <zlib.h>
#include <opencv2/imgproc.hpp>

namespace velmorn::tool {
namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72;

// The text between two others, the first of them looked for from `from` on.
std::string between(const std::string& text, const std::string& before, const std::string& after,
                    std::size_t from = 0) {
  const std::size_t found = text.find(before, from);
  if (found == std::string::npos) throw std::runtime_error("not there: " + before);
  const std::size_t begin = found + before.size();
  const std::size_t end = text.find(after, begin);
  if (end == std::string::npos) throw std::runtime_error("not there: " + after);
  return text.substr(begin, end - begin);
}

// The drawing commands of the first page.
std::string pdfCommands(const std::string& file) {
  const std::string packed = between(file, "stream\n", "endstream");
  std::string commands(1 << 24, '\0');
  uLongf length = commands.size();
  if (uncompress(reinterpret_cast<Bytef*>(commands.data()), &length,
                 reinterpret_cast<const Bytef*>(packed.data()), packed.size()) != Z_OK)
    throw std::runtime_error("not readable");
  commands.resize(length);
  return commands;
}

InkBox boxAround(const std::vector<cv::Point2d>& corners) {
  if (corners.size() != 4) throw std::runtime_error("not a box");
  const auto [left, right] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [top, bottom] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  return {left * kMillimetresPerPoint, top * kMillimetresPerPoint, right * kMillimetresPerPoint,
          bottom * kMillimetresPerPoint};
}

cv::Size2d sizeFrom(const std::string& numbers) {
  std::istringstream stream(numbers);
  cv::Size2d size;
  stream >> size.width >> size.height;
  return size * kMillimetresPerPoint;
}

} // namespace

// The commands turn the y axis down before anything else.
std::vector<InkBox> boxesOfPdf(const std::string& file) {
  std::istringstream words(pdfCommands(file));
  std::vector<InkBox> boxes;
  std::vector<cv::Point2d> corners;
  double before = 0, last = 0;
  for (std::string word; words >> word && word != "BT";) {
    if (word == "m" || word == "l") {
      if (word == "m") corners.clear();
      corners.emplace_back(before, last);
    } else if (word == "h") {
      boxes.push_back(boxAround(corners));
    } else {
      before = last;
      last = std::strtod(word.c_str(), nullptr);
    }
  }
  return boxes;
}

std::vector<InkBox> boxesOfSvg(const std::string& file) {
  const std::size_t drawing = file.find("<g id=");
  std::istringstream words(between(file, " d=\"", "\"", drawing));
  std::vector<InkBox> boxes;
  std::vector<cv::Point2d> corners;
  for (std::string word; words >> word;) {
    if (word == "Z") {
      boxes.push_back(boxAround(corners));
      continue;
    }
    cv::Point2d place;
    words >> place.x >> place.y;
    if (word == "M") corners.clear();
    corners.push_back(place);
  }
  return boxes;
}

cv::Size2d pageOfPdf(const std::string& file) {
  return sizeFrom(between(file, "/MediaBox [ 0 0 ", "]"));
}

cv::Size2d pageOfSvg(const std::string& file) {
  return sizeFrom(between(file, " width=\"", "pt\"") + " " + between(file, " height=\"", "pt\""));
}

cv::Mat_<uchar> pictureOf(const std::vector<InkBox>& boxes, const cv::Size2d& page,
                          double pixelsPerMillimetre) {
  const auto pixel = [&](double length) { return cvRound(length * pixelsPerMillimetre); };
  cv::Mat_<uchar> picture(pixel(page.height), pixel(page.width), uchar{255});
  for (const InkBox& box : boxes)
    picture(cv::Range(pixel(box.top), pixel(box.bottom)),
            cv::Range(pixel(box.left), pixel(box.right))) = 0;
  return picture;
}

} // namespace velmorn::tool
