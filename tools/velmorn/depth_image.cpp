// Point clouds from depth images.
#include "velmorn/depth_image.h"

#include <cstdint>
#include <vector>

#include "velmorn/image_file.h"
#include "velmorn/lens.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

void addRow(PointCloud& cloud, const cv::Mat& depth, int row, const CameraModel& camera,
            double scale) {
  std::vector<cv::Point2d> pixels;
  std::vector<double> heights; // z of each of the pixels
  const std::uint16_t* const counts = depth.ptr<std::uint16_t>(row);
  for (int column = 0; column < depth.cols; ++column) {
    if (counts[column] == 0) {
      ++cloud.skipped;
      continue;
    }
    pixels.emplace_back(column, row);
    heights.push_back(counts[column] * scale);
  }
  const std::vector<cv::Point2d> rays = raysThrough(camera, pixels);
  for (std::size_t i = 0; i < rays.size(); ++i) {
    addPoint(cloud, rays[i].x * heights[i], rays[i].y * heights[i], heights[i]);
  }
}

} // namespace

cv::Mat readDepthImage(const std::string& path) {
  const cv::Mat depth = requireImage(path);
  if (depth.type() != CV_16UC1) {
    throw ToolError(path + ": not a depth image, which has one channel of 16 bits");
  }
  return depth;
}

PointCloud pointsFromDepth(const cv::Mat& depth, const CameraModel& camera, double scale) {
  PointCloud cloud;
  for (int row = 0; row < depth.rows; ++row) addRow(cloud, depth, row, camera, scale);
  return cloud;
}

} // namespace velmorn::tool
