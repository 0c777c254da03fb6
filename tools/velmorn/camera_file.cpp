// Camera files: the intrinsics of one camera.
#include "velmorn/camera_file.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "velmorn/atomic_file.h"
#include "velmorn/camera_file_forms.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kModelCoefficients = 12;  // what tagOzKCamDistortion holds
constexpr std::size_t kTiltedCoefficients = 14; // with OpenCV's two tilt angles
constexpr double kZeroTolerance = 1e-9;         // for elements of the camera matrix that are fixed

bool allFinite(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

// Checks that the matrix has as many values as its shape says, all of them finite.
void requireSound(const RawMatrix& matrix, const std::string& key) {
  const bool complete = matrix.rows > 0 && matrix.cols > 0 &&
                        matrix.data.size() == static_cast<std::size_t>(matrix.rows) *
                                                  static_cast<std::size_t>(matrix.cols);
  if (!complete) throw ToolError(key + " does not have rows times cols values");
  if (!allFinite(matrix.data)) throw ToolError(key + " holds a number that is not finite");
}

tagOzKCamIntrinsic intrinsicOf(const RawMatrix& matrix) {
  requireSound(matrix, "camera_matrix");
  if (matrix.rows != 3 || matrix.cols != 3) {
    throw ToolError("camera_matrix is " + std::to_string(matrix.rows) + "x" +
                    std::to_string(matrix.cols) + ", not 3x3");
  }
  const std::vector<double>& m = matrix.data;
  if (m[0] <= 0 || m[4] <= 0) throw ToolError("camera_matrix: fx and fy have to be above 0");
  for (const std::size_t zero : {1U, 3U, 6U, 7U}) {
    if (std::abs(m[zero]) > kZeroTolerance) {
      throw ToolError("camera_matrix is not fx 0 cx, 0 fy cy, 0 0 1");
    }
  }
  if (std::abs(m[8] - 1) > kZeroTolerance) {
    throw ToolError("camera_matrix is not fx 0 cx, 0 fy cy, 0 0 1");
  }
  tagOzKCamIntrinsic intrinsic{};
  std::copy(m.begin(), m.end(), intrinsic.matrix);
  return intrinsic;
}

void requireKnownModel(const std::string& model) {
  if (model.empty() || model == "plumb_bob" || model == "rational_polynomial") return;
  throw ToolError("the lens model " + inQuotes(model) +
                  " is not supported (plumb_bob and rational_polynomial are)");
}

tagOzKCamDistortion distortionOf(const RawMatrix& matrix) {
  requireSound(matrix, "distortion_coefficients");
  const std::vector<double>& values = matrix.data;
  const std::size_t count = values.size();
  const bool usual = count == 4 || count == 5 || count == 8 || count == kModelCoefficients;
  if ((!usual && count != kTiltedCoefficients) || std::min(matrix.rows, matrix.cols) != 1) {
    throw ToolError(
        "distortion_coefficients: 4, 5, 8, 12 or 14 numbers in one row or column are "
        "wanted, not " +
        std::to_string(matrix.rows) + "x" + std::to_string(matrix.cols));
  }
  if (count == kTiltedCoefficients && (values[12] != 0 || values[13] != 0)) {
    throw ToolError(
        "distortion_coefficients: a tilted sensor is not supported, the last two of 14 "
        "have to be 0");
  }
  tagOzKCamDistortion distortion{};
  std::copy_n(values.begin(), std::min(count, kModelCoefficients), distortion.coeffs);
  return distortion;
}

CameraModel modelOf(const RawCamera& raw) {
  requireKnownModel(raw.distortionModel);
  CameraModel model;
  model.intrinsic = intrinsicOf(raw.cameraMatrix);
  model.distortion = distortionOf(raw.distortion);
  if (raw.imageWidth > 0 && raw.imageHeight > 0) {
    model.imageSize = cv::Size(raw.imageWidth, raw.imageHeight);
  }
  return model;
}

} // namespace

CameraModel readCameraFile(const std::string& path) {
  const std::string text = readWholeFile(path);
  try {
    return modelOf(isFileStorageText(text) ? readFileStorageForm(text) : readCameraInfoForm(text));
  } catch (const ToolError& error) {
    throw ToolError(path + ": " + error.what());
  }
}

std::string cameraFileText(const Calibration& calibration) {
  cv::FileStorage file(".yml", cv::FileStorage::WRITE | cv::FileStorage::MEMORY);
  file << "image_width" << calibration.imageSize.width;
  file << "image_height" << calibration.imageSize.height;
  file << "camera_matrix" << calibration.cameraMatrix;
  file << "distortion_coefficients" << calibration.distortion;
  file << "avg_reprojection_error" << calibration.reprojectionRms;
  return file.releaseAndGetString();
}

} // namespace velmorn::tool
