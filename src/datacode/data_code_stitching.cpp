// Stitching by data-code board: poses, tree, chained result.
#include "datacode/data_code_stitching.h"

#include <memory>

#include "datacode/data_code_tree.h"
#include "foundation/log.h"
#include "stitching/cam_relation_tree.h"
#include "stitching/image_files.h"
#include "stitching/result_entry.h"
#include "stitching/stitch_checks.h"

namespace velmorn {
namespace {

constexpr int kMinShots = 1;

int checkCameraParameters(const DataCodeJob& job) {
  for (const std::string& camID : job.camIDs)
    if (job.intrinsics.count(camID) == 0 || job.distortions.count(camID) == 0) {
      printAndLog("camera matrix or dist is error\n");
      return kOzkBadSize;
    }
  return kOzkSuccess;
}

// "chessImgs/corner-ID-K.bmp", or nothing when no picture is wanted.
std::string cornerImagePath(const DataCodeJob& job, const std::string& camID, std::size_t shot) {
  if (!job.saveCornerImgs) return {};
  return kCornerImageFolder + ("corner-" + camID + "-" + std::to_string(shot)) + ".bmp";
}

// camFromBoard of every camera and board position. Returns 0 or the code that stops the run.
int findPoses(const DataCodeJob& job, int minCornerNum, PoseMap& poses) {
  for (const std::string& camID : job.camIDs) {
    const std::vector<std::string>& paths = job.chessImgPaths.at(camID);
    const DataCodeCamera camera = job.camera(camID);
    poses[camID].assign(paths.size(), cv::Mat());
    for (std::size_t k = 0; k < paths.size(); ++k) {
      const ShotPose pose =
          findShotPose(camera, {paths[k], cornerImagePath(job, camID, k)}, minCornerNum);
      if (pose.fatal != 0) return pose.fatal;
      poses[camID][k] = pose.camFromBoard;
    }
  }
  return kOzkSuccess;
}

// A base camera with the tree below it.
struct RootedTree {
  std::shared_ptr<CamRalationTree> root;
  int baseCamIdx = 0;
  int height = 0;
};

RootedTree growTree(const DataCodeJob& job, PoseMap& poses, int baseCamIdx) {
  RootedTree tree;
  tree.baseCamIdx = baseCamIdx;
  tree.root = std::make_shared<CamRalationTree>();
  tree.root->camID = job.camIDs[static_cast<std::size_t>(baseCamIdx)];
  std::vector<std::string> others = job.camIDs;
  others.erase(others.begin() + baseCamIdx);
  buildDataCodeCamTree(tree.root, others, poses, &tree.height);
  return tree;
}

// The requested base, or else the one with the lowest tree, the first of several. The height alone
// decides: a camera without any link wins, and the run then fails for the others.
RootedTree chooseTree(const DataCodeJob& job, PoseMap& poses) {
  if (job.namesBase()) return growTree(job, poses, job.baseCamIdx);
  RootedTree best;
  best.height = job.cameraCount();
  for (int i = 0; i < job.cameraCount(); ++i) {
    RootedTree tree = growTree(job, poses, i);
    if (tree.height < best.height) best = tree;
  }
  return best;
}

int reportUnlinked(const std::string& camID) {
  writeLog(kLogPath, "%s camera RTmat is empty\n", camID.c_str());
  printConsole(camID + " camera RTmat is empty\n");
  return kOzkUnlinkedCamera;
}

// Writes entry by entry: the cameras before one that is not linked are in the host's record.
int writeEntries(const DataCodeJob& job, const RootedTree& tree, OzKStitchResult& result) {
  MatrixMap rotations, translations;
  ResidualMap residuals;
  chainCamRalationTree(tree.root, rotations, translations, residuals);
  for (int i = 0; i < job.cameraCount(); ++i) {
    if (i == tree.baseCamIdx) {
      writeBaseEntry(result.camExtrinsic[i]);
      result.camRTError[i] = 0;
      continue;
    }
    const std::string& camID = job.camIDs[static_cast<std::size_t>(i)];
    if (rotations[camID].empty() || translations[camID].empty()) return reportUnlinked(camID);
    writeCameraEntry(rotations[camID], translations[camID], result.camExtrinsic[i]);
    result.camRTError[i] = residuals[camID];
  }
  return kOzkSuccess;
}

} // namespace

DataCodeCamera DataCodeJob::camera(const std::string& camID) const {
  return {camID, rowMajor(3, 3, intrinsics.at(camID).matrix),
          rowMajor(1, 12, distortions.at(camID).coeffs)};
}

int checkDataCodeJob(const DataCodeJob& job) {
  int status = checkCameraCount(job.cameraCount());
  if (status == kOzkSuccess) status = checkImageLists(job.camIDs, job.chessImgPaths, kMinShots);
  if (status == kOzkSuccess) status = checkCameraParameters(job);
  return status;
}

void finishDataCodeResult(const DataCodeJob& job, int baseCamIdx, const char* success,
                          OzKStitchResult& result) {
  result.cameraNum = job.cameraCount();
  result.baseCamIdx = baseCamIdx;
  printConsole("baseCamIdx=" + std::to_string(baseCamIdx) + "\n");
  writeLog(kLogPath, "%s", success);
}

int stitchByDataCode(const DataCodeJob& job, int minCornerNum, OzKStitchResult& result) {
  int status = checkDataCodeJob(job);
  if (status != kOzkSuccess) return status;
  PoseMap poses;
  status = findPoses(job, minCornerNum, poses);
  if (status != kOzkSuccess) return status;

  const RootedTree tree = chooseTree(job, poses);
  status = writeEntries(job, tree, result);
  if (status != kOzkSuccess) return status;
  finishDataCodeResult(job, tree.baseCamIdx, "ozkVelmornByDataCodeChess success\n", result);
  return kOzkSuccess;
}

} // namespace velmorn
