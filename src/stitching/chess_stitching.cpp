// The driver of a chessboard stitching run.
#include "stitching/chess_stitching.h"

#include "foundation/log.h"
#include "stitching/cam_relation_tree.h"
#include "stitching/chess_corners.h"
#include "stitching/stitch_checks.h"

namespace velmorn {
namespace {

// What every step needs, so that the steps read as one call each.
struct Job {
  const std::vector<std::string>& camIDs;
  const ImagePathMap& chessImgPaths;
  const MatrixMap& intrinsics;
  const MatrixMap& distortions;
  tagOzKSize patternSize;
  float squareSize;
  int minImages;

  int cameraCount() const { return static_cast<int>(camIDs.size()); }
};

// A base camera with the tree below it.
struct RootedTree {
  std::shared_ptr<CamRalationTree> root;
  int baseCamIdx = 0;
  int height = 0;
};

int checkCameraParameters(const Job& job) {
  for (const std::string& camID : job.camIDs) {
    const auto intrinsic = job.intrinsics.find(camID);
    const bool good = intrinsic != job.intrinsics.end() && intrinsic->second.rows == 3 &&
                      intrinsic->second.cols == 3 && job.distortions.count(camID) != 0;
    if (!good) {
      printAndLog("camera matrix or dist is error\n");
      return kOzkBadSize;
    }
  }
  return kOzkSuccess;
}

int checkJob(const Job& job) {
  int status = checkCameraCount(job.cameraCount());
  if (status == kOzkSuccess) status = checkImageLists(job.camIDs, job.chessImgPaths, job.minImages);
  if (status == kOzkSuccess) status = checkCameraParameters(job);
  return status;
}

RootedTree growTree(const Job& job, const CornerMap& corners, int baseCamIdx) {
  RootedTree tree;
  tree.baseCamIdx = baseCamIdx;
  tree.root = std::make_shared<CamRalationTree>();
  tree.root->camID = job.camIDs[static_cast<std::size_t>(baseCamIdx)];
  std::vector<std::string> candidates = job.camIDs;
  candidates.erase(candidates.begin() + baseCamIdx);
  buildCamRalationTree(tree.root, candidates, corners, job.intrinsics, job.distortions,
                       job.patternSize, job.squareSize, job.minImages, tree.height);
  return tree;
}

// The requested base, or else the one with the lowest tree, the first of several. The height alone
// decides: a tree that misses cameras can win, and the run then fails for them.
RootedTree chooseTree(const Job& job, const CornerMap& corners, int requested) {
  const int n = job.cameraCount();
  if (requested >= 0 && requested < n) return growTree(job, corners, requested);

  RootedTree best;
  best.height = n;
  for (int i = 0; i < n; ++i) {
    RootedTree tree = growTree(job, corners, i);
    if (tree.height < best.height) best = tree;
  }
  return best;
}

int checkAllLinked(const Job& job, int baseCamIdx, const MatrixMap& rotations,
                   const MatrixMap& translations) {
  int status = kOzkSuccess;
  for (int i = 0; i < job.cameraCount(); ++i) {
    const std::string& camID = job.camIDs[static_cast<std::size_t>(i)];
    if (i == baseCamIdx || (rotations.count(camID) != 0 && translations.count(camID) != 0))
      continue;
    printConsole("failed to get camera " + camID + " RT\n");
    writeLog(kLogPath, "failed to get camera %s RT\n", camID.c_str());
    status = kOzkComputationFailed;
  }
  return status;
}

void logChoice(const Job& job, int requested, const RootedTree& tree) {
  std::string list = "(";
  for (std::size_t i = 0; i < job.camIDs.size(); ++i) list += (i == 0 ? "" : ",") + job.camIDs[i];
  list += ")";
  writeLog(kLogPath, "camreaIDs %s\n", list.c_str());
  writeLog(kLogPath,
           "inputCameraIdx=%d.minSubCameraDepth=%d,minDepthBaseCameraIdx=%d,minDepthCamID=%s\n",
           requested, tree.height, tree.baseCamIdx, tree.root->camID.c_str());
}

} // namespace

int calCameraRTByChessImgs(const std::vector<std::string>& camIDs,
                           const ImagePathMap& chessImgPaths, const MatrixMap& intrinsics,
                           const MatrixMap& distortions, tagOzKSize patternSize, float squareSize,
                           MatrixMap& rotations, MatrixMap& translations, ResidualMap& residuals,
                           int minImages, bool saveCornerImages, int& baseCamIdx) {
  rotations.clear();
  translations.clear();
  residuals.clear();
  const Job job{camIDs, chessImgPaths, intrinsics, distortions, patternSize, squareSize, minImages};
  int status = checkJob(job);
  if (status != kOzkSuccess) return status;

  CornerMap corners;
  findChessCornerPtByImgs(chessImgPaths, corners, patternSize, saveCornerImages);
  const RootedTree tree = chooseTree(job, corners, baseCamIdx);
  chainCamRalationTree(tree.root, rotations, translations, residuals);
  status = checkAllLinked(job, tree.baseCamIdx, rotations, translations);
  if (status != kOzkSuccess) return status;

  logChoice(job, baseCamIdx, tree);
  baseCamIdx = tree.baseCamIdx;
  return kOzkSuccess;
}

} // namespace velmorn
