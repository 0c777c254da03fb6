// The per-camera maps that the stitching functions pass on, keyed by camera identifier.
#ifndef VELMORN64_STITCHING_STITCHING_TYPES_H
#define VELMORN64_STITCHING_STITCHING_TYPES_H

#include <map>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn {

// Image files, entry j shows board position j.
using ImagePathMap = std::map<std::string, std::vector<std::string>>;

// Corners in pixels, list j for image j; empty where the board was not found.
using CornerMap = std::map<std::string, std::vector<std::vector<cv::Point2f>>>;

// Camera matrices (3x3), distortions (1x12), rotations (3x3) or translations (3x1), CV_64FC1.
using MatrixMap = std::map<std::string, cv::Mat>;

// Mean residuals of the links, length unit.
using ResidualMap = std::map<std::string, float>;

} // namespace velmorn

#endif // VELMORN64_STITCHING_STITCHING_TYPES_H
