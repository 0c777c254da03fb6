// The exported chessboard stitching functions.
#include "foundation/boundary.h"
#include "foundation/log.h"
#include "stitching/chess_stitching.h"
#include "stitching/result_entry.h"

namespace velmorn {
namespace {

MatrixMap intrinsicMatrices(const std::map<std::string, tagOzKCamIntrinsic>& camIntrinsics) {
  MatrixMap matrices;
  for (const auto& [camID, intrinsic] : camIntrinsics)
    matrices[camID] = rowMajor(3, 3, intrinsic.matrix);
  return matrices;
}

MatrixMap distortionMatrices(const std::map<std::string, tagOzKCamDistortion>& camDistortions) {
  MatrixMap matrices;
  for (const auto& [camID, distortion] : camDistortions)
    matrices[camID] = rowMajor(1, 12, distortion.coeffs);
  return matrices;
}

int stitchByChess(const std::vector<std::string>& camIDs, const ImagePathMap& chessImgPaths,
                  const std::map<std::string, tagOzKCamIntrinsic>& camIntrinsics,
                  const std::map<std::string, tagOzKCamDistortion>& camDistortions,
                  tagOzKSize patternSize, float squareSize, OzKStitchResult& result, int minImages,
                  bool saveCornerImages, int baseCamIdx) {
  MatrixMap rotations, translations;
  ResidualMap residuals;
  const int status =
      calCameraRTByChessImgs(camIDs, chessImgPaths, intrinsicMatrices(camIntrinsics),
                             distortionMatrices(camDistortions), patternSize, squareSize, rotations,
                             translations, residuals, minImages, saveCornerImages, baseCamIdx);
  if (status != kOzkSuccess) return status;

  OzKStitchResult stitched = result; // entries at and beyond cameraNum stay the caller's
  const int n = static_cast<int>(camIDs.size());
  for (int i = 0; i < n; ++i) {
    if (i == baseCamIdx) {
      writeBaseEntry(stitched.camExtrinsic[i]);
      stitched.camRTError[i] = 0;
      continue;
    }
    const std::string& camID = camIDs[static_cast<std::size_t>(i)];
    writeCameraEntry(rotations[camID], translations[camID], stitched.camExtrinsic[i]);
    stitched.camRTError[i] = residuals[camID];
  }
  stitched.cameraNum = n;
  stitched.baseCamIdx = baseCamIdx;
  printConsole("baseCamIdx=" + std::to_string(baseCamIdx));
  writeLog(kLogPath, "calCameraRTByChessImgs success\n");
  result = stitched; // last: a console that throws must not leave a failed call with a result
  return kOzkSuccess;
}

// The text up to its first NUL; a buffer without one is taken whole.
std::string textOf(const OzKStitchCstring& text) {
  std::size_t length = 0;
  while (length < sizeof text.str && text.str[length] != '\0') ++length;
  return {text.str, length};
}

// The camera's own index picks the entry, for all `num` copies: hosts place the path there.
std::vector<std::string> pathsOf(const OzKStitchCstringList& list, int camera) {
  if (list.num < 1) return {};
  return std::vector<std::string>(static_cast<std::size_t>(list.num), textOf(list.strs[camera]));
}

bool hasNullStrings(const OzKStitchCstringList* lists, int count) {
  for (int i = 0; i < count; ++i)
    if (lists[i].strs == nullptr && lists[i].num > 0) return true;
  return false;
}

int stitchByChessRecords(const OzKStitchCstring* camIDs, int camNum,
                         const OzKStitchCstringList* chessImgPaths,
                         const tagOzKCamIntrinsic* camIntrinsics,
                         const tagOzKCamDistortion* camDistortions, tagOzKSize patternSize,
                         float squareSize, OzKStitchResult* result, int minImages,
                         bool saveCornerImages, int baseCamIdx) {
  if (camIDs == nullptr || chessImgPaths == nullptr || camIntrinsics == nullptr ||
      camDistortions == nullptr || result == nullptr || hasNullStrings(chessImgPaths, camNum))
    return kOzkNullPointer;

  std::vector<std::string> ids;
  ImagePathMap paths;
  std::map<std::string, tagOzKCamIntrinsic> intrinsics;
  std::map<std::string, tagOzKCamDistortion> distortions;
  for (int i = 0; i < camNum; ++i) {
    const std::string camID = textOf(camIDs[i]);
    ids.push_back(camID);
    paths[camID] = pathsOf(chessImgPaths[i], i);
    intrinsics[camID] = camIntrinsics[i];
    distortions[camID] = camDistortions[i];
  }
  return ozkVelmornByChess(ids, paths, intrinsics, distortions, patternSize, squareSize, *result,
                           minImages, saveCornerImages, baseCamIdx);
}

} // namespace
} // namespace velmorn

int ozkVelmornByChess(const std::vector<std::string>& camIDs,
                      const std::map<std::string, std::vector<std::string>>& chessImgPaths,
                      const std::map<std::string, tagOzKCamIntrinsic>& camIntrinsics,
                      const std::map<std::string, tagOzKCamDistortion>& camDistortions,
                      tagOzKSize patternSize, float squareSize, OzKStitchResult& result,
                      int minImages, bool saveCornerImages, int baseCamIdx) {
  return velmorn::guarded([&] {
    return velmorn::stitchByChess(camIDs, chessImgPaths, camIntrinsics, camDistortions, patternSize,
                                  squareSize, result, minImages, saveCornerImages, baseCamIdx);
  });
}

int ozkVelmornByChessCtype(const OzKStitchCstring* camIDs, int camNum,
                           const OzKStitchCstringList* chessImgPaths,
                           const tagOzKCamIntrinsic* camIntrinsics,
                           const tagOzKCamDistortion* camDistortions, tagOzKSize patternSize,
                           float squareSize, OzKStitchResult* result, int minImages,
                           bool saveCornerImages, int baseCamIdx) {
  return velmorn::guarded([&] {
    return velmorn::stitchByChessRecords(camIDs, camNum, chessImgPaths, camIntrinsics,
                                         camDistortions, patternSize, squareSize, result, minImages,
                                         saveCornerImages, baseCamIdx);
  });
}
