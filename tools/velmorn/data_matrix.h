// Data Matrix symbols.
#ifndef VELMORN64_TOOLS_DATA_MATRIX_H
#define VELMORN64_TOOLS_DATA_MATRIX_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// Modules per side of the smallest square Data Matrix (ECC 200) symbol that holds the text.
// Throws ToolError for a text that none holds.
int smallestDataMatrix(const std::string& text);

// The text as a square symbol of `modules` by `modules`, one of the sizes of ECC 200: 1 dark, 0
// light, CV_8UC1, row 0 on top, the solid borders left and below. Throws ToolError when the text
// does not fit.
cv::Mat_<uchar> dataMatrix(const std::string& text, int modules);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DATA_MATRIX_H
