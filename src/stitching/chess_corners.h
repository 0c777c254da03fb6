// Chessboard corner extraction.
#ifndef VELMORN64_STITCHING_CHESS_CORNERS_H
#define VELMORN64_STITCHING_CHESS_CORNERS_H

#include "stitching/stitching_types.h"
#include "velmorn64.h"

namespace velmorn {

// Finds the board's inner corners in every image of every camera, refined to sub-pixel accuracy.
//
// chessImgPaths     image files per camera; cameras are taken in key order, images in list order
// corners           out, cleared first: per camera one list per image, patternSize.width *
//                   patternSize.height points in pixels in OpenCV's order, or empty
// patternSize       inner corners per row and column
// saveCornerImages  write each found board to "chessImgs/" with the corners drawn
//
// A file that cannot be read, has another size than the camera's first readable one or shows no
// board gives an empty list, and the run goes on. Lets OpenCV's exceptions about the pattern size
// pass.
void findChessCornerPtByImgs(const ImagePathMap& chessImgPaths, CornerMap& corners,
                             tagOzKSize patternSize, bool saveCornerImages);

} // namespace velmorn

#endif // VELMORN64_STITCHING_CHESS_CORNERS_H
