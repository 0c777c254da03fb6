// The points of a merged cloud, with their colours.
#ifndef VELMORN64_TOOLS_COLOURED_CLOUD_H
#define VELMORN64_TOOLS_COLOURED_CLOUD_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

struct ColouredCloud {
  std::vector<cv::Vec3f> points;      // finite, in the file's order
  std::vector<cv::Vec3b> colours;     // red, green, blue; one per point, or none
  std::vector<std::uint8_t> cameras;  // index in `cameraIds`; one per point, or none
  std::vector<std::string> cameraIds; // as the file's comments say
  std::size_t read = 0;               // points of the file, before any were left out
};

// Reads a PLY file: x, y and z, red, green and blue of 8 bits if present, the property `camera` of
// 8 bits if present, and the comment lines "camera N ID". Throws ToolError that names the file.
ColouredCloud readColouredCloud(const std::string& path);

// At most so many of the points, evenly spread over the file: one at random, the same in every run,
// out of each of so many equally long parts.
ColouredCloud thinned(const ColouredCloud& cloud, std::size_t most);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_COLOURED_CLOUD_H
