// Stitching by data-code board in its older form: the last pose of every camera.
#include "datacode/data_code_stitching.h"
#include "datacode/data_code_tree.h"
#include "stitching/image_files.h"
#include "stitching/result_entry.h"

namespace velmorn {
namespace {

constexpr int kAnyCornerNum = 0;

using LastPoses = std::map<std::string, cv::Mat>; // camFromBoard, 4x4

// Every image of a camera has the same picture: the last one remains.
std::string cornerImagePath(const DataCodeJob& job, const std::string& camID) {
  return job.saveCornerImgs ? kCornerImageFolder + ("corner-" + camID) + ".bmp" : std::string();
}

int findLastPoses(const DataCodeJob& job, LastPoses& poses) {
  for (const std::string& camID : job.camIDs) {
    const DataCodeCamera camera = job.camera(camID);
    for (const std::string& path : job.chessImgPaths.at(camID)) {
      const ShotPose pose =
          findShotPose(camera, {path, cornerImagePath(job, camID)}, kAnyCornerNum);
      if (pose.fatal != 0) return pose.fatal;
      if (!pose.camFromBoard.empty()) poses[camID] = pose.camFromBoard;
    }
  }
  return kOzkSuccess;
}

bool everyCameraHasAPose(const DataCodeJob& job, const LastPoses& poses) {
  for (const std::string& camID : job.camIDs)
    if (poses.count(camID) == 0) return false;
  return true;
}

void writeEntries(const DataCodeJob& job, int baseCamIdx, const LastPoses& poses,
                  OzKStitchResult& result) {
  const cv::Mat& baseFromBoard = poses.at(job.camIDs[static_cast<std::size_t>(baseCamIdx)]);
  for (int i = 0; i < job.cameraCount(); ++i) {
    result.camRTError[i] = 0;
    if (i == baseCamIdx) {
      writeBaseEntry(result.camExtrinsic[i]);
      continue;
    }
    const cv::Mat& camFromBoard = poses.at(job.camIDs[static_cast<std::size_t>(i)]);
    const cv::Mat baseFromCam = baseFromBoard * camFromBoard.inv();
    writeCameraEntry(baseFromCam(cv::Rect(0, 0, 3, 3)), baseFromCam(cv::Rect(3, 0, 1, 3)),
                     result.camExtrinsic[i]);
  }
}

} // namespace

int stitchByLastPoses(const DataCodeJob& job, OzKStitchResult& result) {
  int status = checkDataCodeJob(job);
  if (status != kOzkSuccess) return status;
  LastPoses poses;
  status = findLastPoses(job, poses);
  if (status != kOzkSuccess) return status;
  if (!everyCameraHasAPose(job, poses)) return kOzkComputationFailed;

  const int baseCamIdx = job.namesBase() ? job.baseCamIdx : 0;
  writeEntries(job, baseCamIdx, poses, result);
  finishDataCodeResult(job, baseCamIdx, "calCameraRTByChessImgs success\n", result);
  return kOzkSuccess;
}

} // namespace velmorn
