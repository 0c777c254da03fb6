// `velmorn platform`: where a camera stands over a platform, from a board lying on it.
#include "velmorn/platform_command.h"

#include <iomanip>
#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/extrinsic_file.h"
#include "velmorn/json_text.h"
#include "velmorn/lens.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

tagOzKCamExtrinsic findIn(const cv::Mat& image, const CameraModel& camera,
                          const PlatformOptions& options) {
  try {
    return findPlatform(image, camera, options.board);
  } catch (const ToolError& error) {
    throw ToolError(options.image + ": " + error.what());
  }
}

std::string resultText(const PlatformOptions& options, const tagOzKCamExtrinsic& platformFromCam) {
  const PlatformBoard& board = options.board;
  nlohmann::ordered_json file = extrinsicJson({"platformFromCam", platformFromCam});
  file["image"] = options.image;
  file["board"] = {
      {"columns", board.size.width}, {"rows", board.size.height}, {"square", board.square}};
  file["offset"] = {board.offset[0], board.offset[1], board.offset[2]};
  file["keepBoardAxes"] = board.keepBoardAxes;
  return fileText(file);
}

void printSummary(const PlatformOptions& options, const tagOzKCamExtrinsic& platformFromCam) {
  const cv::Matx44d pose = poseFrom(platformFromCam);
  const cv::Vec3d camera = translationOf(pose);
  const cv::Vec3d sight(pose(0, 2), pose(1, 2), pose(2, 2));
  std::cout << std::fixed << std::setprecision(3) << "camera at      " << camera[0] << ", "
            << camera[1] << ", " << camera[2] << '\n'
            << std::setprecision(6) << "line of sight  " << sight[0] << ", " << sight[1] << ", "
            << sight[2] << '\n'
            << "written to     " << oneLine(options.output) << '\n';
}

} // namespace

void runPlatform(const PlatformOptions& options) {
  requireWritable(options.output);
  const CameraModel camera = readCameraFile(options.intrinsics);
  const cv::Mat image = readBoardImage(options.image);
  warnAboutImageSize(camera, options.intrinsics, image.size());
  const tagOzKCamExtrinsic platformFromCam = findIn(image, camera, options);
  writeFileAtomically(options.output, resultText(options, platformFromCam));
  printSummary(options, platformFromCam);
}

} // namespace velmorn::tool
