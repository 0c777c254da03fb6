// The modules of the code in a white square.
#ifndef VELMORN64_PROVIDERS_QUILLET64_MODULE_SAMPLING_H
#define VELMORN64_PROVIDERS_QUILLET64_MODULE_SAMPLING_H

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"
#include "quillet64/square_look.h"

namespace velmorn::quillet {

// Middle of a module in the square's frame; module coordinates are 0 to `modules` across the code.
cv::Point2d inSquare(int modules, double moduleColumn, double moduleRow);

// Mean darkness of each module, 0 white to 1 black, row 0 on the square's first side.
cv::Mat_<float> sampleModules(const cv::Mat& grey, const Quad& quad, const SquareLook& look,
                              int modules);

// How well the borders are those of a Data Matrix that stands upright after `turns` quarter turns
// of the frame (see turnedQuad): 1 for exactly so, about 0 for any other picture.
double finderScore(const cv::Mat_<float>& darkness, int turns);

// The number of quarter turns with the best score.
int bestTurns(const cv::Mat_<float>& darkness);

// The modules as seen in the turned frame.
cv::Mat_<float> turnedModules(const cv::Mat_<float>& darkness, int turns);

// Takes back some of what the neighbours have spilled into each module.
cv::Mat_<float> sharpened(const cv::Mat_<float>& darkness);

// 1 where darker than half.
cv::Mat_<uchar> darkModules(const cv::Mat_<float>& darkness);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_MODULE_SAMPLING_H
