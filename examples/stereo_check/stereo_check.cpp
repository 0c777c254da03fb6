// Compares a stitched pair of cameras with OpenCV's stereo calibration of the same corners.
//
//   velmorn stitch rig.json
//   stereo_check rig.json result.json
//
// Exit status 0 when both agree within the tolerances, 1 when they do not or a file is at fault, 2
// for a wrong command line.
#include <CLI/CLI.hpp>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <map>
#include <opencv2/calib3d.hpp>
#include <string>
#include <vector>

#include "stitching/chess_corners.h"
#include "velmorn/board.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"
#include "velmorn/rig_file.h"
#include "velmorn/stitch_messages.h"
#include "velmorn/stream_redirection.h"
#include "velmorn/tool_error.h"

namespace {

using namespace velmorn::tool;

struct Options {
  std::string rig;
  std::string result;
  double maxDegrees = 0.05;
  double maxBaseline = 0.3; // length unit
};

struct Corners {
  std::vector<std::vector<cv::Point2f>> first;
  std::vector<std::vector<cv::Point2f>> second;
};

// The corners of the board positions that both cameras saw.
Corners sharedCorners(const Rig& rig) {
  const RigCamera& first = rig.cameras[0];
  const RigCamera& second = rig.cameras[1];
  StitchMessages unheard({}, nullptr);
  const StreamRedirection console(std::cout, unheard);
  velmorn::CornerMap found;
  velmorn::findChessCornerPtByImgs({{first.id, first.images}, {second.id, second.images}}, found,
                                   rig.board, false);
  Corners shared;
  for (std::size_t j = 0; j < first.images.size(); ++j) {
    if (found[first.id][j].empty() || found[second.id][j].empty()) continue;
    shared.first.push_back(found[first.id][j]);
    shared.second.push_back(found[second.id][j]);
  }
  return shared;
}

cv::Matx44d secondFromFirstByOpenCv(const Rig& rig) {
  const Corners corners = sharedCorners(rig);
  const std::vector<std::vector<cv::Point3f>> points(corners.first.size(),
                                                     boardPoints(rig.board, rig.square));
  cv::Matx33d firstMatrix(rig.cameras[0].model.intrinsic.matrix);
  cv::Matx33d secondMatrix(rig.cameras[1].model.intrinsic.matrix);
  // Matrices of their own: OpenCV hands the coefficients back in its own number of them.
  cv::Mat firstDistortion(cv::Matx<double, 1, 12>(rig.cameras[0].model.distortion.coeffs));
  cv::Mat secondDistortion(cv::Matx<double, 1, 12>(rig.cameras[1].model.distortion.coeffs));
  cv::Mat R, T, E, F;
  // With fixed intrinsics the image size is not used.
  cv::stereoCalibrate(points, corners.first, corners.second, firstMatrix, firstDistortion,
                      secondMatrix, secondDistortion, cv::Size(), R, T, E, F,
                      cv::CALIB_FIX_INTRINSIC);
  return poseFrom(R, T);
}

cv::Matx44d secondFromFirstByStitching(const Rig& rig, const std::string& resultPath) {
  const std::map<std::string, cv::Matx44d> baseFromCam = readBaseFromCam(resultPath);
  for (const RigCamera& camera : rig.cameras) {
    if (baseFromCam.count(camera.id) == 0) {
      throw ToolError(resultPath + ": no camera " + inQuotes(camera.id));
    }
  }
  const cv::Matx44d baseFromFirst = baseFromCam.at(rig.cameras[0].id);
  const cv::Matx44d baseFromSecond = baseFromCam.at(rig.cameras[1].id);
  return inversePose(baseFromSecond) * baseFromFirst;
}

// Prints the comparison and returns whether the two agree.
bool compare(const Options& options) {
  const Rig rig = readRig(options.rig);
  if (rig.cameras.size() != 2) throw ToolError(options.rig + ": not a rig of two cameras");
  const cv::Matx44d stitched = secondFromFirstByStitching(rig, options.result);
  const cv::Matx44d calibrated = secondFromFirstByOpenCv(rig);

  const double degrees = rotationDegrees(stitched * inversePose(calibrated));
  const double stitchedBaseline = cv::norm(translationOf(stitched));
  const double calibratedBaseline = cv::norm(translationOf(calibrated));
  const double difference = std::abs(stitchedBaseline - calibratedBaseline);
  const bool agree = degrees <= options.maxDegrees && difference <= options.maxBaseline;

  std::cout << std::fixed << std::setprecision(3) << "baseline    " << stitchedBaseline
            << " stitched, " << calibratedBaseline << " by stereoCalibrate\n"
            << "difference  " << degrees << " degrees of rotation (allowed " << options.maxDegrees
            << "), " << difference << " of baseline (allowed " << options.maxBaseline << ")\n"
            << (agree ? "PASS: stitching agrees with stereoCalibrate\n"
                      : "FAIL: stitching differs from stereoCalibrate\n");
  return agree;
}

} // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Compares a stitched pair of cameras with OpenCV's stereo calibration");
  app.add_option("rig", options.rig, "Rig file of two cameras")->required();
  app.add_option("result", options.result, "Its result file")->required();
  app.add_option("--max-degrees", options.maxDegrees, "Rotation difference that passes")
      ->capture_default_str();
  app.add_option("--max-baseline", options.maxBaseline,
                 "Baseline difference that passes, in the rig's length unit")
      ->capture_default_str();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    return compare(options) ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << "stereo_check: " << oneLine(error.what()) << '\n';
    return 1;
  }
}
