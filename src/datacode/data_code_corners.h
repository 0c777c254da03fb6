// Corners of a data-code board in one image, with their places on the board.
#ifndef VELMORN64_DATACODE_DATA_CODE_CORNERS_H
#define VELMORN64_DATACODE_DATA_CODE_CORNERS_H

#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

// Reads one code and extracts the corners around it.
//
// image      handed to the two imported libraries as it is
// imagePts   out, replaced on success: pixels, the extractor's corners less half a pixel
// worldPts   out, replaced on success: board frame, unit of the codes, z = 0
//
// Returns 0, kOzkNoDataCode, or the code of the imported library that failed; the outputs then stay
// as they were.
int findDataCodeChessCornerPtAndWorldPt(const tagOzKImage* image,
                                        std::vector<cv::Point2f>& imagePts,
                                        std::vector<cv::Point3f>& worldPts);

} // namespace velmorn

#endif // VELMORN64_DATACODE_DATA_CODE_CORNERS_H
