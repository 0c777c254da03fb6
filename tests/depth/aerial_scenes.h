// Scenes for the aerial view's tests and benchmark, and the comparison of whole images.
#ifndef VELMORN64_TESTS_DEPTH_AERIAL_SCENES_H
#define VELMORN64_TESTS_DEPTH_AERIAL_SCENES_H

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

struct AerialScene {
  std::vector<cv::Mat> depths, colors;
  std::vector<tagOzKCamIntrinsic> intrinsics;
  std::vector<tagOzKCamExtrinsic> extrinsics; // entry 0 is NaN: it must not be read
  tagOzKRect2Df32 region{};
  float resolution = 1;

  int cameraCount() const { return static_cast<int>(depths.size()); }
};

// A depth or colour image as the record form takes it.
inline tagOzKImage recordOf(const cv::Mat& m) {
  tagOzKImage image{};
  const bool isDepth = m.type() == CV_16UC1;
  image.type = isDepth ? kOzkImageOneChannel : kOzkImageThreeChannels;
  image.dataType = isDepth ? kOzkSample16U : kOzkSample8U;
  image.width = static_cast<std::uint32_t>(m.cols);
  image.height = static_cast<std::uint32_t>(m.rows);
  image.data = m.data;
  return image;
}

inline tagOzKCamIntrinsic intrinsicOf(double fx, double cx, double fy, double cy) {
  return {{fx, 0, cx, 0, fy, cy, 0, 0, 1}};
}

// firstFromCam, turned by `turn` about z and tilted by `tilt` about y (radians).
inline tagOzKCamExtrinsic firstFromCamOf(double turn, double tilt, double x, double y) {
  const double c = std::cos(turn), s = std::sin(turn), ct = std::cos(tilt), st = std::sin(tilt);
  return {{c * ct, -s, c * st, x, s * ct, c, s * st, y, -st, 0, ct, 0, 0, 0, 0, 1}};
}

// A sloping floor with boxes on it, seen by cameras side by side: depths from 800 to 1500,
// `missing` of the samples without a measurement.
inline AerialScene floorScene(int cameraCount, int width, int height, double missing,
                              unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> share(0, 1);
  AerialScene scene;
  const double focal = 0.9 * width;
  for (int k = 0; k < cameraCount; ++k) {
    cv::Mat depth(height, width, CV_16UC1), color(height, width, CV_8UC3);
    for (int v = 0; v < height; ++v)
      for (int u = 0; u < width; ++u) {
        const bool isBox = (u * 8 / width + v * 6 / height) % 3 == 0;
        const double d = (isBox ? 1000 : 1300) + 120.0 * u / width + 3 * share(random);
        depth.at<std::uint16_t>(v, u) = static_cast<std::uint16_t>(d);
        color.at<cv::Vec3b>(v, u) =
            cv::Vec3b(static_cast<unsigned char>(u), static_cast<unsigned char>(v),
                      static_cast<unsigned char>(random()));
      }
    for (int v = 0; v < height; v += 4)
      for (int u = 0; u < width; u += 8)
        if (share(random) < missing)
          depth(cv::Rect(u, v, 8, 4) & cv::Rect(0, 0, width, height)).setTo(0);
    scene.depths.push_back(depth);
    scene.colors.push_back(color);
    scene.intrinsics.push_back(intrinsicOf(focal, 0.49 * width, focal, 0.51 * height));
    scene.extrinsics.push_back(
        firstFromCamOf(0.03 * k, 0.05 * k, 350.0 * (k % 2), 300.0 * (k / 2)));
  }
  for (double& element : scene.extrinsics[0].data) element = std::nan("");
  return scene;
}

inline bool haveEqualBytes(const cv::Mat& a, const cv::Mat& b) {
  if (a.rows != b.rows || a.cols != b.cols || a.type() != b.type()) return false;
  const std::size_t rowBytes = static_cast<std::size_t>(a.cols) * a.elemSize();
  for (int v = 0; v < a.rows; ++v)
    if (std::memcmp(a.ptr(v), b.ptr(v), rowBytes) != 0) return false;
  return true;
}

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_AERIAL_SCENES_H
