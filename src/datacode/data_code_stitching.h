// What the data-code stitching functions are asked to do, and their input checks.
#ifndef VELMORN64_DATACODE_DATA_CODE_STITCHING_H
#define VELMORN64_DATACODE_DATA_CODE_STITCHING_H

#include <map>
#include <string>
#include <vector>

#include "datacode/data_code_poses.h"
#include "stitching/stitching_types.h"
#include "velmorn64.h"

namespace velmorn {

struct DataCodeJob {
  const std::vector<std::string>& camIDs;
  const ImagePathMap& chessImgPaths;
  const std::map<std::string, tagOzKCamIntrinsic>& intrinsics;
  const std::map<std::string, tagOzKCamDistortion>& distortions;
  bool saveCornerImgs;
  int baseCamIdx; // as requested

  int cameraCount() const { return static_cast<int>(camIDs.size()); }
  bool namesBase() const { return baseCamIdx >= 0 && baseCamIdx < cameraCount(); }
  DataCodeCamera camera(const std::string& camID) const;
};

// Number of cameras, images and camera parameters, in this order, with messages. Returns
// kOzkSuccess or kOzkBadSize.
int checkDataCodeJob(const DataCodeJob& job);

// Completes a result: camera count and base, and the messages of a success.
void finishDataCodeResult(const DataCodeJob& job, int baseCamIdx, const char* success,
                          OzKStitchResult& result);

// ozkVelmornByDataCodeChess: all poses, a tree of the cameras, chained to its root.
int stitchByDataCode(const DataCodeJob& job, int minCornerNum, OzKStitchResult& result);

// ozkVelmornByDataCodeChess_backup: one pose per camera, each linked to the base.
int stitchByLastPoses(const DataCodeJob& job, OzKStitchResult& result);

} // namespace velmorn

#endif // VELMORN64_DATACODE_DATA_CODE_STITCHING_H
