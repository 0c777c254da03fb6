// Cameras in a row over one large data-code board, none of which sees a square that another sees.
#include "tools/data_code_rig.h"

#include <algorithm>
#include <cmath>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/matchers.h"
#include "support/temp_dir.h"
#include "tools/rig_builder.h"
#include "velmorn/camera_file.h"

namespace velmorn::tool {
namespace {

constexpr double kSquare = 20;    // mm
constexpr int kColumnsEach = 21;  // from one camera to the next, squares
constexpr int kRows = 16;         // squares
constexpr double kDistance = 230; // from the cameras to the board, mm
constexpr double kRadians = CV_PI / 180;
const cv::Size kImageSize(1280, 960);

CodeBoardSpec boardFor(int cameraCount) { return {kColumnsEach * cameraCount, kRows, kSquare}; }

cv::Matx44d rotated(const cv::Vec3d& degrees, const cv::Vec3d& translation) {
  cv::Matx33d rotation;
  cv::Rodrigues(degrees * kRadians, rotation);
  return transformOf(rotation, translation);
}

// Every camera with a tilt, a roll and a height of its own.
cv::Matx44d placeCamera(int i) {
  const cv::Vec3d centre((i + 0.5) * kColumnsEach * kSquare + 5 * (i % 2),
                         0.5 * kRows * kSquare - 8 * (i % 3), -kDistance - 4 * (i % 3));
  const cv::Vec3d turn(6.0 * (i % 3 - 1), 3.0 - 2.5 * (i % 2), 2.0 * (i % 4) - 3);
  const cv::Matx44d turned = rotated(turn, {0, 0, 0});
  return turned * rotated({0, 0, 0}, -centre);
}

cv::Matx44d placeBoard(int shot) {
  return rotated({0.8 * shot, -0.4 * shot, 0.3 * shot}, {3.0 * shot, -4.0 * shot, 2.0 * shot});
}

// The distortion's polynomial brings places far outside the image back into it.
bool isNearImage(cv::Point2f place) {
  return std::abs(place.x / static_cast<float>(kImageSize.width) - 0.5F) < 0.7F &&
         std::abs(place.y / static_cast<float>(kImageSize.height) - 0.5F) < 0.7F;
}

} // namespace

DataCodeRig::DataCodeRig(int cameraCount, int shots)
    : board_(boardFor(cameraCount)), symbols_(board_) {
  for (int i = 0; i < cameraCount; ++i) {
    cameras_.push_back(distortedCamera(kImageSize, 1040 + 7.0 * i));
    camFromWorld_.push_back(placeCamera(i));
  }
  for (int shot = 0; shot < shots; ++shot) worldFromBoard_.push_back(placeBoard(shot));
}

std::string DataCodeRig::imageName(int camera, int shot) const {
  return id(camera) + "-" + std::to_string(shot) + ".png";
}

cv::Matx44d DataCodeRig::camFromBoard(int camera, int shot) const {
  return camFromWorld_[static_cast<std::size_t>(camera)] *
         worldFromBoard_[static_cast<std::size_t>(shot)];
}

cv::Matx44d DataCodeRig::camFromCam(int target, int source) const {
  return camFromWorld_[static_cast<std::size_t>(target)] *
         inverseOf(camFromWorld_[static_cast<std::size_t>(source)]);
}

cv::Range DataCodeRig::columnsSeen(int camera, int shot) const {
  const velmorn::CameraModel& model = cameras_[static_cast<std::size_t>(camera)];
  velmorn::CameraModel plain = model;
  plain.distortion = cv::Vec<double, 12>::all(0);
  cv::Range seen(board_.columns, 0);
  for (const CodeBoardCorner& corner :
       visibleCodeBoardCorners(model, board_, camFromBoard(camera, shot), 0)) {
    const cv::Point3f onBoard(corner.onBoard.x, corner.onBoard.y, 0);
    const cv::Point2f place = projectPoints(plain, camFromBoard(camera, shot), {onBoard}).front();
    if (!isNearImage(place)) continue;
    seen.start = std::min(seen.start, corner.column - 1);
    seen.end = std::max(seen.end, corner.column + 1);
  }
  return seen;
}

void DataCodeRig::writeCameraFile(const std::filesystem::path& folder, int camera) const {
  const velmorn::CameraModel& model = cameras_[static_cast<std::size_t>(camera)];
  Calibration calibration;
  calibration.imageSize = kImageSize;
  calibration.cameraMatrix = cv::Mat(model.matrix);
  calibration.distortion = cv::Mat(model.distortion).reshape(1, 1);
  writeFile(folder / (id(camera) + ".yml"), cameraFileText(calibration));
}

void DataCodeRig::writeImage(const std::filesystem::path& folder, int camera, int shot) const {
  const CodeBoardRenderer renderer(cameras_[static_cast<std::size_t>(camera)]);
  ImageEffects effects;
  effects.blurSigma = 0.8;
  effects.noiseSigma = 3;
  effects.seed = static_cast<std::uint64_t>(100 * camera + shot + 1);
  cv::imwrite((folder / imageName(camera, shot)).string(),
              renderer.render(board_, symbols_, camFromBoard(camera, shot), effects));
}

void DataCodeRig::writeEmptyImage(const std::filesystem::path& folder, int camera, int shot) const {
  cv::imwrite((folder / imageName(camera, shot)).string(),
              cv::Mat(kImageSize, CV_8UC1, cv::Scalar(kRenderedBackground)));
}

nlohmann::json DataCodeRig::rigFile() const {
  nlohmann::json rig = {{"board", "data-code"}, {"cameras", nlohmann::json::array()}};
  for (int camera = 0; camera < cameraCount(); ++camera) {
    std::vector<std::string> images;
    for (int shot = 0; shot < static_cast<int>(worldFromBoard_.size()); ++shot)
      images.push_back(imageName(camera, shot));
    rig["cameras"].push_back(rigCamera(id(camera), id(camera) + ".yml", images));
  }
  return rig;
}

} // namespace velmorn::tool
