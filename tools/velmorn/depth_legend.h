// What the false colours of an aerial view stand for.
#ifndef VELMORN64_TOOLS_DEPTH_LEGEND_H
#define VELMORN64_TOOLS_DEPTH_LEGEND_H

#include <optional>

#include <opencv2/core.hpp>

#include "velmorn/colour_bar.h"

namespace velmorn::tool {

// The bar of an aerial view in false colours, the nearest sample at its foot. Equal lengths of it
// stand for equally many cells, as the library spreads its colours. Nothing when no cell shows a
// sample.
//
// depth      CV_16UC1, the samples that the cells show, 0 for none
// picture    CV_8UC3, the view
// depthUnit  length units per count
std::optional<ColourBar> depthLegend(const cv::Mat& depth, const cv::Mat& picture,
                                     double depthUnit);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DEPTH_LEGEND_H
