// The images of a rig that looks at a plain chessboard.
#include "velmorn/plain_shots.h"

#include "stitching/chess_corners.h"
#include "velmorn/grey_image.h"
#include "velmorn/library_console.h"
#include "velmorn/shot_pose.h"

namespace velmorn::tool {
namespace {

// Row by row, as OpenCV gives the corners.
std::vector<cv::Point3f> boardCorners(const Rig& rig) {
  std::vector<cv::Point3f> corners;
  for (int row = 0; row < rig.board.height; ++row)
    for (int column = 0; column < rig.board.width; ++column)
      corners.emplace_back(static_cast<float>(column) * rig.square,
                           static_cast<float>(row) * rig.square, 0.0F);
  return corners;
}

ShotRecord describe(const std::string& image, ImageOutcome outcome,
                    const std::vector<cv::Point2f>& pixels, const Rig& rig,
                    const CameraModel& camera) {
  ShotRecord shot;
  shot.image = image;
  if (pixels.empty()) {
    shot.outcome = outcomeWord(outcome);
    return shot;
  }
  const auto pose = solveShotPose(boardCorners(rig), pixels, camera);
  if (!pose) {
    shot.outcome = outcomeWord(ImageOutcome::kNoBoard);
    shot.detail = "corners found, but no pose computed from them";
    return shot;
  }
  shot.outcome = outcomeWord(ImageOutcome::kBoardFound);
  shot.reprojectionError = pose->reprojectionError;
  shot.camFromBoard = pose->camFromBoard;
  shot.corners.assign(pixels.begin(), pixels.end());
  return shot;
}

} // namespace

const char* outcomeWord(ImageOutcome outcome) {
  switch (outcome) {
    case ImageOutcome::kBoardFound:
      return "found";
    case ImageOutcome::kNotLoaded:
      return "not-loaded";
    case ImageOutcome::kWrongSize:
      return "wrong-size";
    case ImageOutcome::kNoBoard:
    case ImageOutcome::kUnknown:
      break;
  }
  return "no-board";
}

cv::Size firstImageSize(const RigCamera& camera) {
  for (const std::string& path : camera.images) {
    const cv::Mat grey = readGrey(path);
    if (!grey.empty()) return grey.size();
  }
  return cv::Size();
}

CornerMap cornersAgain(const Rig& rig, const StitchMessages& messages) {
  ImagePathMap found;
  std::map<std::string, std::vector<std::size_t>> indices; // of `found` in the camera's list
  for (const RigCamera& camera : rig.cameras) {
    const std::vector<ImageOutcome>& outcomes = messages.outcomes().at(camera.id);
    found[camera.id];
    for (std::size_t j = 0; j < camera.images.size(); ++j) {
      if (messages.complete() && outcomes[j] != ImageOutcome::kBoardFound) continue;
      found[camera.id].push_back(camera.images[j]);
      indices[camera.id].push_back(j);
    }
  }
  CornerMap foundCorners;
  {
    const LibraryConsole console;
    findChessCornerPtByImgs(found, foundCorners, rig.board, false);
  }
  CornerMap corners;
  for (const RigCamera& camera : rig.cameras) {
    corners[camera.id].resize(camera.images.size());
    for (std::size_t k = 0; k < indices[camera.id].size(); ++k) {
      corners[camera.id][indices[camera.id][k]] = foundCorners[camera.id][k];
    }
  }
  return corners;
}

ShotMap describePlainShots(const Rig& rig, const OutcomeMap& outcomes, const CornerMap& corners) {
  ShotMap shots;
  for (const RigCamera& camera : rig.cameras) {
    CameraShots& own = shots[camera.id];
    own.imageSize = firstImageSize(camera);
    for (std::size_t j = 0; j < camera.images.size(); ++j)
      own.shots.push_back(describe(camera.images[j], outcomes.at(camera.id)[j],
                                   corners.at(camera.id)[j], rig, camera.model));
  }
  return shots;
}

} // namespace velmorn::tool
