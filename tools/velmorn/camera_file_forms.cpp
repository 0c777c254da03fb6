// The forms that camera files come in.
#include "velmorn/camera_file_forms.h"

#include <yaml-cpp/yaml.h>
#include <opencv2/core.hpp>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr const char* kWidthKey = "image_width";
constexpr const char* kHeightKey = "image_height";
constexpr const char* kMatrixKey = "camera_matrix";
constexpr const char* kModelKey = "distortion_model";
constexpr const char* kDistortionKey = "distortion_coefficients";

[[noreturn]] void throwNoMatrix(const std::string& key) {
  throw ToolError("no matrix " + inQuotes(key) + " (rows, cols, data)");
}

bool startsWith(const std::string& text, std::size_t from, const char* head) {
  return text.compare(from, std::char_traits<char>::length(head), head) == 0;
}

double numberOf(const cv::FileNode& node, const std::string& key) {
  if (!node.isInt() && !node.isReal()) throw ToolError("no number in " + inQuotes(key));
  return static_cast<double>(node);
}

// 0 for anything but a whole number: the size of the images is not needed.
int sizeOf(const cv::FileNode& node) { return node.isInt() ? static_cast<int>(node) : 0; }

RawMatrix matrixOf(const cv::FileNode& root, const std::string& key) {
  const cv::FileNode node = root[key];
  if (!node.isMap()) throwNoMatrix(key);
  const cv::FileNode data = node["data"];
  if (!node["rows"].isInt() || !node["cols"].isInt() || !data.isSeq()) throwNoMatrix(key);
  RawMatrix matrix;
  matrix.rows = static_cast<int>(node["rows"]);
  matrix.cols = static_cast<int>(node["cols"]);
  for (const cv::FileNode& value : data) matrix.data.push_back(numberOf(value, key));
  return matrix;
}

int sizeOf(const YAML::Node& node) { return node.IsDefined() ? node.as<int>(0) : 0; }

RawMatrix matrixOf(const YAML::Node& root, const std::string& key) {
  const YAML::Node node = root[key];
  if (!node.IsDefined() || !node.IsMap()) throwNoMatrix(key);
  if (!node["rows"] || !node["cols"] || !node["data"]) throwNoMatrix(key);
  RawMatrix matrix;
  matrix.rows = node["rows"].as<int>();
  matrix.cols = node["cols"].as<int>();
  matrix.data = node["data"].as<std::vector<double>>();
  return matrix;
}

RawCamera cameraOf(const YAML::Node& root) {
  if (!root.IsMap()) throw ToolError("neither an OpenCV nor a ROS camera_info file");
  RawCamera camera;
  camera.imageWidth = sizeOf(root[kWidthKey]);
  camera.imageHeight = sizeOf(root[kHeightKey]);
  camera.cameraMatrix = matrixOf(root, kMatrixKey);
  if (root[kModelKey]) camera.distortionModel = root[kModelKey].as<std::string>();
  camera.distortion = matrixOf(root, kDistortionKey);
  return camera;
}

} // namespace

bool isFileStorageText(const std::string& text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string::npos) return false;
  return startsWith(text, start, "%YAML") || startsWith(text, start, "<?xml") || text[start] == '{';
}

RawCamera readFileStorageForm(const std::string& text) {
  try {
    const cv::FileStorage file(text, cv::FileStorage::READ | cv::FileStorage::MEMORY);
    const cv::FileNode root = file.root();
    if (!root.isMap()) throw ToolError("not an OpenCV file with named values");
    RawCamera camera;
    camera.imageWidth = sizeOf(root[kWidthKey]);
    camera.imageHeight = sizeOf(root[kHeightKey]);
    camera.cameraMatrix = matrixOf(root, kMatrixKey);
    if (root[kModelKey].isString()) {
      camera.distortionModel = static_cast<std::string>(root[kModelKey]);
    }
    camera.distortion = matrixOf(root, kDistortionKey);
    return camera;
  } catch (const cv::Exception& error) {
    throw ToolError("not readable as an OpenCV file: " + error.err);
  }
}

RawCamera readCameraInfoForm(const std::string& text) {
  try {
    return cameraOf(YAML::Load(text));
  } catch (const YAML::Exception& error) {
    throw ToolError("not readable as YAML: " + std::string(error.what()));
  }
}

} // namespace velmorn::tool
