// The images of a rig that looks at a data-code board.
#ifndef VELMORN64_TOOLS_DATA_CODE_SHOTS_H
#define VELMORN64_TOOLS_DATA_CODE_SHOTS_H

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/rig_file.h"
#include "velmorn/shot_record.h"
#include "velmorn/stitch_messages.h"

namespace velmorn::tool {

// What one image gave.
struct DataCodeShot {
  ImageOutcome outcome = ImageOutcome::kUnknown; // kBoardFound exactly when there is a pose
  std::vector<cv::Point3f> corners;              // on the board
  cv::Matx44d camFromBoard = cv::Matx44d::eye();
  std::vector<cv::Point2f> pixels; // the same corners in the image
  float square = 0;                // as the code says
  double reprojectionError = 0;    // root mean square, pixels
  std::string detail;              // what there is to say besides
};

using DataCodeShots = std::map<std::string, std::vector<DataCodeShot>>; // by camera id

// Looks at every image as the library's run does, with the same functions and the same limits;
// `report` is called for each.
DataCodeShots findDataCodeShots(const Rig& rig,
                                const std::function<void(const ImageReport&)>& report);

OutcomeMap outcomesOf(const DataCodeShots& shots);

// The same for the result file.
ShotMap describeDataCodeShots(const Rig& rig, const DataCodeShots& shots);

// Side of a square as the first code says; 0 when none was read.
float squareOf(const DataCodeShots& shots);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DATA_CODE_SHOTS_H
