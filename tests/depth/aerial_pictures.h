// Pictures of scenes by the projection's kernels.
#ifndef VELMORN64_TESTS_DEPTH_AERIAL_PICTURES_H
#define VELMORN64_TESTS_DEPTH_AERIAL_PICTURES_H

#include <gtest/gtest.h>

#include "depth/aerial_cameras.h"
#include "depth/aerial_projection.h"
#include "depth/aerial_scenes.h"
#include "depth/plain_aerial_view.h"

namespace velmorn {

// One camera that looks at the plane x = u d, y = v d, region 0 < x, y < 100, resolution 10.
struct HandScene : AerialScene {
  explicit HandScene(int width) {
    depths.push_back(cv::Mat::zeros(1, width, CV_16UC1));
    colors.push_back(cv::Mat::zeros(1, width, CV_8UC3));
    intrinsics.push_back(intrinsicOf(1, 0, 1, -1)); // row 0 is at y = d
    extrinsics.emplace_back();
    region = {0, 0, 100, 100};
    resolution = 10;
  }
  void sample(int u, unsigned short depth, unsigned char shade) {
    depths[0].at<std::uint16_t>(0, u) = depth;
    colors[0].at<cv::Vec3b>(0, u) = cv::Vec3b(shade, 2, 3);
  }
};

inline cv::Mat colored(const AerialScene& s) {
  cv::Mat image;
  EXPECT_EQ(projectDepthToAerialWithColor(s.depths.data(), s.colors.data(), s.intrinsics.data(),
                                          s.extrinsics.data(), s.cameraCount(), &s.region,
                                          s.resolution, &image),
            kOzkSuccess);
  return image;
}

inline cv::Mat falseColored(const AerialScene& s) {
  cv::Mat image;
  EXPECT_EQ(projectDepthToAerial(s.depths.data(), s.intrinsics.data(), s.extrinsics.data(),
                                 s.cameraCount(), &s.region, s.resolution, &image),
            kOzkSuccess);
  return image;
}

// The coloured image of a size by depths, as it is made where keys do not fit.
inline cv::Mat coloredByDepths(const AerialScene& s, const cv::Size& size) {
  cv::Mat image(size, CV_8UC3, cv::Scalar::all(7)), nearest(size, CV_16UC1);
  AerialCameras cameras(s.depths, s.colors, s.intrinsics.data(), s.extrinsics.data(),
                        {s.region, s.resolution, size.width}, image.total());
  projectByDepths(cameras, {nearest.ptr<std::uint16_t>(), image.data, image.total()});
  return image;
}

// Both kernels against the plain loop; colours by keys and by depths.
inline void expectPlainBytes(const AerialScene& s) {
  const cv::Mat withColor =
      plainAerialView(s.depths.data(), s.colors.data(), s.intrinsics.data(), s.extrinsics.data(),
                      s.cameraCount(), s.region, s.resolution);
  const cv::Mat withoutColor =
      plainAerialView(s.depths.data(), nullptr, s.intrinsics.data(), s.extrinsics.data(),
                      s.cameraCount(), s.region, s.resolution);
  EXPECT_TRUE(haveEqualBytes(colored(s), withColor));
  EXPECT_TRUE(haveEqualBytes(coloredByDepths(s, withColor.size()), withColor));
  EXPECT_TRUE(haveEqualBytes(falseColored(s), withoutColor));
}

} // namespace velmorn

#endif // VELMORN64_TESTS_DEPTH_AERIAL_PICTURES_H
