// What the library finds of a data-code board in one image.
#ifndef VELMORN64_TOOLS_DATA_CODE_VIEW_H
#define VELMORN64_TOOLS_DATA_CODE_VIEW_H

#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

struct DataCodeView {
  std::string code;                 // text of the code that was used; empty when none was read
  std::string problem;              // why there are no corners; empty when there are
  std::vector<cv::Point2f> pixels;  // corners, (0, 0) is the centre of the first pixel
  std::vector<cv::Point3f> onBoard; // the same corners, unit of the codes
};

// Looks for the board. Keeps the library's console messages to itself.
//
// grey  8-bit, one channel; empty for an image that could not be read
DataCodeView findDataCodeBoard(const cv::Mat& grey);

// The text of the code that was used, from what the library said on the console; empty when none
// was read. The text is any text, also one that looks like the library's own lines.
std::string codeIn(const std::string& console);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DATA_CODE_VIEW_H
