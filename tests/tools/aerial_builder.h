// Jobs of aerial views for tests: small enough to be worked out by hand.
#ifndef VELMORN64_TESTS_TOOLS_AERIAL_BUILDER_H
#define VELMORN64_TESTS_TOOLS_AERIAL_BUILDER_H

#include <cstdint>
#include <filesystem>

#include <nlohmann/json.hpp>
#include <opencv2/core.hpp>

namespace velmorn::tool {

// A camera file of an image with 5 x 1 pixels: f = 100, principal point (2, 0), no distortion.
std::string rowCameraYaml();

// A depth image of 5 x 1 pixels, all at one depth. At 100 counts the pixels of the row camera are 1
// count apart, from x = -2 to 2, at y = 0.
cv::Mat depthRow(std::uint16_t depth);

// A job of two cameras "a" and "b" with the region [-1.5, -0.5, 1.5, 0.5] at resolution 1, which
// is 4 x 2 cells, and a result file with "b" at x = 1.2 in the frame of "a". Without depth_unit.
//
// "a" sees x = -1, 0, 1 in the region, at depth 100: cells 0, 1, 2 of row 0.
// "b" sees x = 0.2, 0.7, 1.2, at depth 50: cells 1, 2, 2 of row 0, nearer than "a".
nlohmann::json twoCameraJob();

// Writes "row.yml", "a.png", "b.png" and "result.json", which twoCameraJob names.
void writeTwoCameraJobFiles(const std::filesystem::path& folder);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_AERIAL_BUILDER_H
