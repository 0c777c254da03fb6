// Single board images, and the files that go wrong.
#include "stitching/board_files.h"

#include <cmath>
#include <stdexcept>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "support/matchers.h"

namespace velmorn {
namespace {

std::string bigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xff);
  return bytes;
}

std::uint32_t crc32(const std::string& bytes) {
  std::uint32_t crc = 0xffffffff;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320U : 0U);
  }
  return ~crc;
}

std::string pngChunk(const std::string& name, const std::string& content) {
  return bigEndian(static_cast<std::uint32_t>(content.size())) + name + content +
         bigEndian(crc32(name + content));
}

void write(const std::string& path, const cv::Mat& image) {
  if (!cv::imwrite(path, image)) throw std::runtime_error("cannot write " + path);
}

} // namespace

BoardPhoto takePhoto(cv::Size imageSize, int variant, const BoardSpec& board,
                     const ImageEffects& effects) {
  const CameraModel camera = distortedCamera(imageSize, 0.9 * imageSize.width);
  const double direction = 0.9 * variant;
  const cv::Vec3d tilt(0.3 * std::cos(direction), 0.3 * std::sin(direction), 0.06);
  cv::Matx33d R;
  cv::Rodrigues(tilt, R);
  const cv::Vec3d middle(0.5 * (board.width - 1) * board.square,
                         0.5 * (board.height - 1) * board.square, 0);
  const double distance = 1.2 * board.square * (board.width + 2);
  const cv::Matx44d camFromBoard = transformOf(R, cv::Vec3d(0, 0, distance) - R * middle);
  return {BoardRenderer(camera).render(board, camFromBoard, effects),
          projectCorners(camera, board, camFromBoard)};
}

std::string writePhoto(const std::string& path, cv::Size imageSize, int variant) {
  write(path, takePhoto(imageSize, variant).image);
  return path;
}

std::string writeBlank(const std::string& path, cv::Size imageSize) {
  write(path, cv::Mat(imageSize, CV_8UC1, cv::Scalar(128)));
  return path;
}

std::string pngClaiming(std::uint32_t width, std::uint32_t height) {
  const std::string greyWithEightBits("\x08\x00\x00\x00\x00", 5);
  const std::string startOfStream("\x78\x01\x01\xff\x00\x00\xff", 7); // 255 stored bytes announced
  return "\x89PNG\r\n\x1a\n" +
         pngChunk("IHDR", bigEndian(width) + bigEndian(height) + greyWithEightBits) +
         pngChunk("IDAT", startOfStream);
}

std::vector<cv::Point2f> searchWithOpencv(const cv::Mat& grey, cv::Size patternSize) {
  std::vector<cv::Point2f> corners;
  if (!cv::findChessboardCorners(grey, patternSize, corners, 13)) return {};
  const cv::TermCriteria stop(cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 30, 0.01);
  cv::cornerSubPix(grey, corners, cv::Size(11, 11), cv::Size(-1, -1), stop);
  return corners;
}

} // namespace velmorn
