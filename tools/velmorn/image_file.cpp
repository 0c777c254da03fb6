// Reading and writing image files.
#include "velmorn/image_file.h"

#include <filesystem>
#include <vector>

#include <opencv2/imgcodecs.hpp>

#include "velmorn/silenced_descriptor.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;

void requireFile(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) throw ToolError("no such file: " + path);
  if (!fs::is_regular_file(path, error)) throw ToolError("not a regular file: " + path);
}

} // namespace

cv::Mat readImage(const std::string& path, int mode) {
  const SilencedDescriptor decoders(kStandardError);
  try {
    return cv::imread(path, mode);
  } catch (const cv::Exception&) {
    return cv::Mat(); // such as more pixels than OpenCV accepts
  }
}

cv::Mat requireImage(const std::string& path) {
  requireFile(path);
  cv::Mat image = readImage(path, cv::IMREAD_UNCHANGED);
  if (image.empty()) throw ToolError(path + ": not readable as an image");
  return image;
}

std::string imageFileText(const std::string& path, const cv::Mat& image) {
  std::vector<unsigned char> content;
  if (!cv::imencode(fs::path(path).extension().string(), image, content)) {
    throw ToolError("cannot write " + path + ": the image could not be encoded");
  }
  return std::string(content.begin(), content.end());
}

std::string neighbourImage(const std::string& path, const std::string& ending) {
  const fs::path original = path;
  return (original.parent_path() / (original.stem().string() + ending)).string();
}

std::string pixelText(const cv::Mat& image) {
  const std::string bits = std::to_string(8 * image.elemSize1()) + "-bit ";
  switch (image.channels()) {
    case 1:
      return bits + "grey";
    case 3:
      return bits + "colour";
    case 4:
      return bits + "colour with alpha";
    default:
      return bits + "with " + counted(static_cast<std::size_t>(image.channels()), "channel");
  }
}

} // namespace velmorn::tool
