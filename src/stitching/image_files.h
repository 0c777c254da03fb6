// Image files that a stitching run reads and writes.
#ifndef VELMORN64_STITCHING_IMAGE_FILES_H
#define VELMORN64_STITCHING_IMAGE_FILES_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn {

// Where corner images go, below the working directory.
constexpr const char* kCornerImageFolder = "chessImgs/";

// The image as 8-bit grey; empty when it cannot be read.
cv::Mat readGrey(const std::string& path);

// Writes a picture into kCornerImageFolder, which is created when it is not there. The corners
// count without their picture: no failure to write it is reported or passed on.
void saveCornerImage(const std::string& path, const cv::Mat& annotated);

} // namespace velmorn

#endif // VELMORN64_STITCHING_IMAGE_FILES_H
