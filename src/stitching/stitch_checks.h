// Input checks that all stitching runs share, with their messages.
#ifndef VELMORN64_STITCHING_STITCH_CHECKS_H
#define VELMORN64_STITCHING_STITCH_CHECKS_H

#include <string>
#include <vector>

#include "stitching/stitching_types.h"

namespace velmorn {

// The same text to the console and to the log.
void printAndLog(const char* message);

// 2 to 10 cameras; messages to the log only. Returns kOzkSuccess or kOzkBadSize.
int checkCameraCount(int n);

// Every camera has images, as many as the first one and at least `minImages`. Needs at least one
// camera. Returns kOzkSuccess or kOzkBadSize.
int checkImageLists(const std::vector<std::string>& camIDs, const ImagePathMap& chessImgPaths,
                    int minImages);

} // namespace velmorn

#endif // VELMORN64_STITCHING_STITCH_CHECKS_H
