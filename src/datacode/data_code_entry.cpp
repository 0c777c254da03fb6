// The exported data-code stitching functions.
#include "datacode/data_code_stitching.h"
#include "foundation/boundary.h"

int ozkVelmornByDataCodeChess(const std::vector<std::string>& camIDs,
                              std::map<std::string, std::vector<std::string>>& chessImgPaths,
                              std::map<std::string, tagOzKCamIntrinsic>& intrinsics,
                              std::map<std::string, tagOzKCamDistortion>& distortions,
                              OzKStitchResult& result, bool saveCornerImgs, int baseCamIdx,
                              int minCornerNum) {
  return velmorn::guarded([&] {
    return velmorn::stitchByDataCode(
        {camIDs, chessImgPaths, intrinsics, distortions, saveCornerImgs, baseCamIdx}, minCornerNum,
        result);
  });
}

int ozkVelmornByDataCodeChess_backup(const std::vector<std::string>& camIDs,
                                     std::map<std::string, std::vector<std::string>>& chessImgPaths,
                                     std::map<std::string, tagOzKCamIntrinsic>& intrinsics,
                                     std::map<std::string, tagOzKCamDistortion>& distortions,
                                     OzKStitchResult& result, bool saveCornerImgs, int baseCamIdx) {
  return velmorn::guarded([&] {
    return velmorn::stitchByLastPoses(
        {camIDs, chessImgPaths, intrinsics, distortions, saveCornerImgs, baseCamIdx}, result);
  });
}
