// A rig over a data-code board whose corners the fake libraries hand out.
#include "datacode/data_code_rig.h"

#include <cmath>
#include <cstring>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/matchers.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

constexpr double kSquare = 20;
constexpr double kPitch = 100; // between neighbouring cameras
constexpr unsigned char kPattern = 0xC3;
constexpr std::size_t kEntryBytes = sizeof(tagOzKCamExtrinsic);

cv::Matx44d rigid(const cv::Vec3d& rotationVector, const cv::Vec3d& t) {
  cv::Matx33d R;
  cv::Rodrigues(rotationVector, R);
  return transformOf(R, t);
}

std::string cameraName(std::size_t index) {
  return std::string(1, static_cast<char>('P' + static_cast<char>(index)));
}

cv::Matx44d camFromWorld(int camera) {
  return rigid({0.05 * std::sin(camera), 0.05 * std::cos(camera), 0.02},
               {-kPitch * camera, 3.0 * camera, 0});
}

cv::Matx44d worldFromBoard(int shot) {
  return rigid({0.1 - 0.1 * shot, 0.03 * shot, 0.02 * shot}, {-60, -70, 500 + 20.0 * shot});
}

template <typename Entry>
DataCodeOutcome run(const Entry& entry) {
  DataCodeOutcome outcome;
  outcome.result = untouchedDataCodeResult();
  const ConsoleCapture capture;
  outcome.status = entry(outcome.result);
  outcome.console = capture.text();
  return outcome;
}

} // namespace

DataCodeOutcome runDataCode(DataCodeInputs& in) {
  return run([&](OzKStitchResult& result) {
    return ozkVelmornByDataCodeChess(in.camIDs, in.paths, in.intrinsics, in.distortions, result,
                                     in.saveCornerImgs, in.baseCamIdx, in.minCornerNum);
  });
}

DataCodeOutcome runDataCodeBackup(DataCodeInputs& in) {
  return run([&](OzKStitchResult& result) {
    return ozkVelmornByDataCodeChess_backup(in.camIDs, in.paths, in.intrinsics, in.distortions,
                                            result, in.saveCornerImgs, in.baseCamIdx);
  });
}

OzKStitchResult untouchedDataCodeResult() {
  OzKStitchResult result;
  std::memset(static_cast<void*>(&result), kPattern, sizeof result);
  return result;
}

bool isUntouchedFrom(const OzKStitchResult& result, int first) {
  const OzKStitchResult untouched = untouchedDataCodeResult();
  const auto n = static_cast<std::size_t>(first), rest = kMaxStitchCameras - n;
  return std::memcmp(&result.camExtrinsic[n], &untouched.camExtrinsic[n], rest * kEntryBytes) ==
             0 &&
         std::memcmp(&result.camRTError[n], &untouched.camRTError[n], rest * sizeof(float)) == 0;
}

DataCodeRig::DataCodeRig(const std::vector<std::string>& views, const std::filesystem::path& folder)
    : views_(views), camera_(distortedCamera({640, 480}, 520)), folder_(folder) {
  cv::Mat noise(48, 64, CV_8UC1);
  cv::RNG(5).fill(noise, cv::RNG::UNIFORM, 0, 256);
  for (std::size_t i = 0; i < views_.size(); ++i)
    for (std::size_t k = 0; k < views_[i].size(); ++k)
      cv::imwrite((folder_ / (cameraName(i) + std::to_string(k) + ".png")).string(), noise);
}

DataCodeInputs DataCodeRig::inputs() const {
  DataCodeInputs inputs;
  for (std::size_t i = 0; i < views_.size(); ++i) {
    const std::string id = cameraName(i);
    inputs.camIDs.push_back(id);
    for (std::size_t k = 0; k < views_[i].size(); ++k)
      inputs.paths[id].push_back((folder_ / (id + std::to_string(k) + ".png")).string());
    inputs.intrinsics[id] = camera_.intrinsicRecord();
    inputs.distortions[id] = camera_.distortionRecord();
  }
  return inputs;
}

std::vector<fake::Shot> DataCodeRig::script() const {
  std::vector<fake::Shot> script;
  for (std::size_t i = 0; i < views_.size(); ++i)
    for (std::size_t k = 0; k < views_[i].size(); ++k) {
      fake::Shot shot;
      shot.codes = views_[i][k] == '1' ? 1 : 0;
      shot.corners = corners(static_cast<int>(i), static_cast<int>(k));
      script.push_back(shot);
    }
  return script;
}

std::vector<fake::Corner> DataCodeRig::corners(int camera, int shot) const {
  std::vector<cv::Point3f> onBoard;
  for (int row = 0; row < 5; ++row)
    for (int column = 0; column < 5; ++column)
      onBoard.emplace_back(static_cast<float>(kSquare * (column + 5 * camera)),
                           static_cast<float>(kSquare * row), 0.0F);
  const std::vector<cv::Point2f> pixels =
      projectPoints(camera_, camFromBoard(camera, shot), onBoard);
  std::vector<fake::Corner> corners;
  for (std::size_t i = 0; i < onBoard.size(); ++i)
    corners.push_back({pixels[i].x + 0.5F, pixels[i].y + 0.5F, onBoard[i].x, onBoard[i].y});
  return corners;
}

cv::Matx44d DataCodeRig::camFromCam(int target, int source) const {
  return camFromWorld(target) * inverseOf(camFromWorld(source));
}

cv::Matx44d DataCodeRig::camFromBoard(int camera, int shot) const {
  return camFromWorld(camera) * worldFromBoard(shot);
}

} // namespace velmorn
