// What a camera's own images say about its intrinsics.
#include "velmorn/lens_refit.h"

#include <cmath>
#include <vector>

#include <opencv2/calib3d.hpp>

#include "velmorn/shot_geometry.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kLeastShots = 3;
constexpr std::size_t kMostShots = 20;
constexpr std::size_t kMostCorners = 120; // per image; more only take time
constexpr int kIterations = 50;
constexpr double kChange = 1e-9;

struct Views {
  std::vector<std::vector<cv::Point3f>> onBoard;
  std::vector<std::vector<cv::Point2f>> pixels;
};

void addView(const StitchRecord& run, const ShotRecord& shot, Views& views) {
  const std::vector<cv::Point3f> places = placesOnBoard(run, shot);
  const std::size_t step = (places.size() + kMostCorners - 1) / kMostCorners;
  views.onBoard.emplace_back();
  views.pixels.emplace_back();
  for (std::size_t i = 0; i < places.size(); i += step) {
    views.onBoard.back().push_back(places[i]);
    views.pixels.back().emplace_back(shot.corners[i]);
  }
}

Views viewsOf(const StitchRecord& run, const CameraRecord& camera) {
  std::vector<const ShotRecord*> found;
  for (const ShotRecord& shot : camera.shots)
    if (shot.found()) found.push_back(&shot);
  Views views;
  const std::size_t step = (found.size() + kMostShots - 1) / kMostShots;
  for (std::size_t i = 0; i < found.size(); i += step) addView(run, *found[i], views);
  return views;
}

// Root mean square over all corners, each image with its own best pose.
double givenError(const Views& views, const CameraModel& model) {
  const cv::Matx33d matrix(model.intrinsic.matrix);
  const cv::Matx<double, 1, 12> distortion(model.distortion.coeffs);
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t i = 0; i < views.pixels.size(); ++i) {
    cv::Mat rotation, translation;
    std::vector<cv::Point2f> projected;
    cv::solvePnP(views.onBoard[i], views.pixels[i], matrix, distortion, rotation, translation);
    cv::projectPoints(views.onBoard[i], rotation, translation, matrix, distortion, projected);
    sum += cv::norm(views.pixels[i], projected, cv::NORM_L2SQR);
    count += projected.size();
  }
  return std::sqrt(sum / static_cast<double>(count));
}

cv::Vec4d fourOf(const cv::Matx33d& matrix) {
  return {matrix(0, 0), matrix(1, 1), matrix(0, 2), matrix(1, 2)};
}

LensRefit refit(const Views& views, const CameraModel& model, cv::Size imageSize) {
  cv::Mat matrix(cv::Matx33d(model.intrinsic.matrix), true);
  cv::Mat distortion(cv::Matx<double, 1, 12>(model.distortion.coeffs), true);
  cv::Mat rotations, translations, deviations, extrinsicDeviations, viewErrors;
  const int flags = cv::CALIB_USE_INTRINSIC_GUESS | cv::CALIB_FIX_TANGENT_DIST |
                    cv::CALIB_RATIONAL_MODEL | cv::CALIB_THIN_PRISM_MODEL | cv::CALIB_FIX_K3 |
                    cv::CALIB_FIX_K4 | cv::CALIB_FIX_K5 | cv::CALIB_FIX_K6 |
                    cv::CALIB_FIX_S1_S2_S3_S4;
  LensRefit lens;
  lens.given = fourOf(cv::Matx33d(model.intrinsic.matrix));
  lens.givenError = givenError(views, model);
  lens.foundError = cv::calibrateCamera(
      views.onBoard, views.pixels, imageSize, matrix, distortion, rotations, translations,
      deviations, extrinsicDeviations, viewErrors, flags,
      cv::TermCriteria(cv::TermCriteria::COUNT | cv::TermCriteria::EPS, kIterations, kChange));
  lens.found = fourOf(cv::Matx33d(matrix));
  for (int i = 0; i < 4; ++i) lens.deviations[i] = deviations.at<double>(i);
  return lens;
}

bool isFinite(const LensRefit& lens) {
  double sum = lens.givenError + lens.foundError;
  for (int i = 0; i < 4; ++i) sum += lens.found[i] + lens.deviations[i];
  return std::isfinite(sum);
}

} // namespace

std::optional<LensRefit> refitLens(const StitchRecord& run, const CameraRecord& camera) {
  if (!camera.intrinsics || camera.imageSize.area() == 0) return {};
  const Views views = viewsOf(run, camera);
  if (views.pixels.size() < kLeastShots) return {};
  try {
    const LensRefit lens = refit(views, camera.intrinsics->model, camera.imageSize);
    if (isFinite(lens)) return lens;
  } catch (const cv::Exception&) { // too few corners, or all on a line
  }
  return {};
}

} // namespace velmorn::tool
