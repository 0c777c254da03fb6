// The images of one simulated camera.
#include "velmorn/simulate_images.h"

#include <algorithm>

#include <opencv2/imgproc.hpp>

#include "velmorn/board_picture.h"
#include "velmorn/code_board_picture.h"
#include "velmorn/lens.h"
#include "velmorn/pose.h"
#include "velmorn/scene_render.h"
#include "velmorn/simulate_code_shots.h"
#include "velmorn/simulate_plain_shots.h"
#include "velmorn/simulate_random.h"

namespace velmorn::tool {
namespace {

constexpr int kSubpixels = 2; // of colour images, per direction

// What PlaneRenderer takes.
cv::Mat_<cv::Vec2f> cornerRaysOf(const CameraModel& camera) {
  cv::Mat_<cv::Vec2f> rays(camera.imageSize.height + 1, camera.imageSize.width + 1);
  std::vector<cv::Point2d> corners(static_cast<std::size_t>(rays.cols));
  for (int y = 0; y < rays.rows; ++y) {
    for (int x = 0; x < rays.cols; ++x) corners[static_cast<std::size_t>(x)] = {x - 0.5, y - 0.5};
    cv::Vec2f* row = rays[y];
    for (const cv::Point2d& ray : raysThrough(camera, corners)) {
      *row++ = {static_cast<float>(ray.x), static_cast<float>(ray.y)};
    }
  }
  return rays;
}

cv::Mat_<float> greyGround(const SimulatedRig& rig, const SceneCamera& camera) {
  cv::Mat grey;
  cv::cvtColor(renderColor(rig.ground, camera), grey, cv::COLOR_BGR2GRAY);
  cv::Mat_<float> levels;
  grey.convertTo(levels, CV_32F);
  return levels;
}

} // namespace

SimulatedBoards simulatedBoards(const SimulateJob& job, const SimulatedRig& rig) {
  SimulatedBoards boards;
  boards.plain = plainBoardOf(job, rig);
  boards.plainShots = plainShots(job, rig, boards.plain);
  boards.code = codeBoardOf(job, rig);
  boards.codeShots = codeShots(job, rig, boards.code);
  return boards;
}

SimulatedImages::SimulatedImages(const SimulateJob& job, const SimulatedRig& rig,
                                 const SimulatedBoards& boards, const CodeBoardSymbols& symbols,
                                 std::size_t camera)
    : job_(job),
      rig_(rig),
      boards_(boards),
      symbols_(symbols),
      index_(camera),
      camera_(rig.cameras[camera]),
      renderer_(cornerRaysOf(camera_.model)),
      background_(greyGround(rig, camera_)) {}

cv::Mat SimulatedImages::boardImage(const BoardPosition& position, const PlanePicture& picture,
                                    double square, std::uint64_t seed) const {
  const ImageEffects effects = {job_.blur, job_.noise, seed};
  const std::vector<std::size_t>& absent = position.absent;
  if (std::find(absent.begin(), absent.end(), index_) != absent.end()) {
    return finishImage(background_.clone(), effects);
  }
  const cv::Matx44d camFromBoard = inversePose(camera_.worldFromCam) * position.worldFromBoard;
  return finishImage(renderer_.render(picture, square, camFromBoard, background_), effects);
}

cv::Mat SimulatedImages::plainBoard(std::size_t shot) const {
  const PlainBoard& board = boards_.plain;
  const BoardPicture picture(board.corners.width, board.corners.height, kPlainQuietZone);
  return boardImage(boards_.plainShots[shot], picture, board.square,
                    randomStart(job_.seed, RandomUse::kPlainImage, index_, shot));
}

cv::Mat SimulatedImages::codeBoard(std::size_t shot) const {
  return boardImage(boards_.codeShots[shot], CodeBoardPicture(boards_.code, symbols_),
                    boards_.code.square,
                    randomStart(job_.seed, RandomUse::kCodeImage, index_, shot));
}

cv::Mat SimulatedImages::depth() const {
  DepthEffects effects;
  effects.step = job_.depth.step;
  effects.noiseSigma = job_.depth.noise;
  effects.holeShare = job_.depth.holes;
  effects.edgeHeight = job_.depth.edge;
  effects.seed = randomStart(job_.seed, RandomUse::kDepth, index_);
  return renderDepth(rig_.scene, camera_, effects);
}

cv::Mat SimulatedImages::color() const {
  const std::uint64_t seed = randomStart(job_.seed, RandomUse::kColor, index_);
  return renderColor(rig_.scene, camera_, {kSubpixels, job_.noise, seed});
}

} // namespace velmorn::tool
