// Where a camera stands over a platform.
#include "velmorn/platform_pose.h"

#include <opencv2/imgcodecs.hpp>

#include "velmorn/image_file.h"
#include "velmorn/library_console.h"
#include "velmorn/pose.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// The library's record of the image. Of its two colour types the swapped one has blue first, as
// OpenCV's images do. `pixels` has to be continuous and to outlive the record.
tagOzKImage recordOf(cv::Mat& pixels) {
  tagOzKImage image{};
  image.type = pixels.channels() == 1 ? kOzkImageOneChannel : kOzkImageThreeChannelsSwapped;
  image.dataType = kOzkSample8U;
  image.width = static_cast<std::uint32_t>(pixels.cols);
  image.height = static_cast<std::uint32_t>(pixels.rows);
  image.data = pixels.data;
  return image;
}

std::string reasonOf(int status, const std::string& console, const PlatformBoard& board) {
  if (console.find("find corners failed") != std::string::npos) {
    return "no board with " + std::to_string(board.size.width) + "x" +
           std::to_string(board.size.height) + " inner corners found";
  }
  if (console.find("solvePnP error") != std::string::npos) {
    return "the board's pose could not be computed";
  }
  return "the library refused the image with status " + std::to_string(status);
}

} // namespace

cv::Mat readBoardImage(const std::string& path) {
  const cv::Mat image = readImage(path, cv::IMREAD_ANYCOLOR);
  if (image.empty()) throw ToolError(path + ": not readable as an image");
  return image;
}

tagOzKCamExtrinsic findPlatform(const cv::Mat& image, const CameraModel& camera,
                                const PlatformBoard& board) {
  cv::Mat pixels = image.isContinuous() ? image : image.clone();
  tagOzKImage record = recordOf(pixels);
  tagOzKCamExtrinsic platformFromCam{};
  int status = 0;
  std::string said;
  {
    const LibraryConsole console;
    status = ozkCalirateCamAndPlatform(&record, camera.intrinsic, camera.distortion, board.size,
                                       board.square, &platformFromCam, board.offset[0],
                                       board.offset[1], board.offset[2], board.keepBoardAxes);
    said = console.text();
  }
  if (status != kOzkSuccess) throw ToolError(reasonOf(status, said, board));
  if (!isFinitePose(poseFrom(platformFromCam))) {
    throw ToolError("the pose came out with a number that is not finite; check the intrinsics");
  }
  return platformFromCam;
}

} // namespace velmorn::tool
