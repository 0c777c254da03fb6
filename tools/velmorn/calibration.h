// Calibration of one camera from images of the board.
#ifndef VELMORN64_TOOLS_CALIBRATION_H
#define VELMORN64_TOOLS_CALIBRATION_H

#include <functional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"
#include "velmorn64.h"

namespace velmorn::tool {

// Fewest images with the board that a calibration is computed from.
constexpr std::size_t kMinCalibrationViews = 3;

// What one image gave.
struct BoardView {
  std::string path;
  std::string problem;              // why the image is not usable; empty for a usable one
  std::vector<cv::Point2f> corners; // pixels; empty for an image that is not usable
};

struct BoardViews {
  cv::Size imageSize; // pixels, the size that most of the images have
  std::vector<BoardView> views;
};

// Finds the board in the images; `report` is called after each one.
BoardViews findBoardViews(const std::vector<std::string>& paths, tagOzKSize board,
                          const std::function<void(const BoardView&)>& report);

// Calibrates from the usable views. Throws ToolError when there are too few of them or the result
// is no camera.
Calibration calibrate(const BoardViews& views, tagOzKSize board, float square);

std::size_t usableCount(const BoardViews& views);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CALIBRATION_H
