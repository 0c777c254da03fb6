// `velmorn corners`: what is found of a board in one image.
#include "velmorn/corners_command.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "velmorn/atomic_file.h"
#include "velmorn/corner_picture.h"
#include "velmorn/grey_image.h"
#include "velmorn/grid_corners.h"
#include "velmorn/paper.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kListedCorners = 10; // without --all

GridCorners findIn(const cv::Mat& grey, const CornersOptions& options) {
  try {
    return options.board ? findPlainCorners(grey, *options.board) : findDataCodeCorners(grey);
  } catch (const ToolError& error) {
    throw ToolError(options.image + ": " + error.what());
  }
}

// "3 to 17"
std::string range(const std::vector<GridCorner>& corners, int GridCorner::*line) {
  const auto [least, most] =
      std::minmax_element(corners.begin(), corners.end(),
                          [&](const auto& a, const auto& b) { return a.*line < b.*line; });
  return std::to_string((*least).*line) + " to " + std::to_string((*most).*line);
}

void printTable(const std::vector<GridCorner>& corners, std::size_t listed) {
  std::cout << "column  row          x          y\n" << std::fixed << std::setprecision(3);
  for (std::size_t i = 0; i < std::min(listed, corners.size()); ++i) {
    const GridCorner& corner = corners[i];
    std::cout << std::setw(6) << corner.column << std::setw(5) << corner.row << std::setw(11)
              << corner.pixel.x << std::setw(11) << corner.pixel.y << '\n';
  }
  if (listed < corners.size())
    std::cout << "and " << corners.size() - listed << " more; --all lists them\n";
}

void printFound(const GridCorners& found, const CornersOptions& options) {
  if (!found.code.empty()) {
    std::cout << "code        " << oneLine(found.code) << '\n'
              << "square      " << shortText(found.square) << '\n';
  }
  std::cout << "corners     " << found.corners.size() << ", columns "
            << range(found.corners, &GridCorner::column) << ", rows "
            << range(found.corners, &GridCorner::row) << '\n';
  printTable(found.corners, options.allCorners ? found.corners.size() : kListedCorners);
  for (const std::string& path : {options.csv, options.output})
    if (!path.empty()) std::cout << "written to  " << oneLine(path) << '\n';
}

std::string csvText(const std::vector<GridCorner>& corners) {
  std::ostringstream text;
  text << "column,row,x,y\n" << std::fixed << std::setprecision(4);
  for (const GridCorner& corner : corners)
    text << corner.column << ',' << corner.row << ',' << corner.pixel.x << ',' << corner.pixel.y
         << '\n';
  return text.str();
}

} // namespace

void runCorners(const CornersOptions& options) {
  for (const std::string& path : {options.csv, options.output})
    if (!path.empty()) requireWritable(path);
  const cv::Mat grey = readGrey(options.image);
  const GridCorners found = findIn(grey, options);
  if (!options.csv.empty()) writeFileAtomically(options.csv, csvText(found.corners));
  if (!options.output.empty())
    writeFileAtomically(options.output, pictureFile(drawCorners(grey, found), options.output));
  printFound(found, options);
}

} // namespace velmorn::tool
