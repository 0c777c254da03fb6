// Extrinsic records for the tests, and what a test asks of them.
#ifndef VELMORN64_TESTS_GEOMETRY_EXTRINSICS_H
#define VELMORN64_TESTS_GEOMETRY_EXTRINSICS_H

#include <cstring>

#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn {

inline tagOzKCamExtrinsic identityExtrinsic() {
  return {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
}

// The frame of the plane z = depth for a camera that looks straight at it.
inline tagOzKCamExtrinsic straightPlaneFromCam(double depth) {
  return {{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, depth, 0, 0, 0, 1}};
}

// The same plane, tilted by a rotation vector about the camera.
inline tagOzKCamExtrinsic tiltedPlaneFromCam(double depth, const cv::Vec3d& rotationVector) {
  cv::Matx33d tilt;
  cv::Rodrigues(rotationVector, tilt);
  const cv::Matx33d R = cv::Matx33d(-1, 0, 0, 0, 1, 0, 0, 0, -1) * tilt;
  return {{R(0, 0), R(0, 1), R(0, 2), 12, R(1, 0), R(1, 1), R(1, 2), -7, R(2, 0), R(2, 1), R(2, 2),
           depth, 0, 0, 0, 1}};
}

inline cv::Matx33d rotationOf(const tagOzKCamExtrinsic& e) {
  return {e.data[0], e.data[1], e.data[2], e.data[4], e.data[5],
          e.data[6], e.data[8], e.data[9], e.data[10]};
}

inline cv::Vec3d shiftOf(const tagOzKCamExtrinsic& e) { return {e.data[3], e.data[7], e.data[11]}; }

inline cv::Vec3d apply(const tagOzKCamExtrinsic& targetFromSource, const cv::Vec3d& point) {
  return rotationOf(targetFromSource) * point + shiftOf(targetFromSource);
}

// A record that no function would write.
inline tagOzKCamExtrinsic foreignExtrinsic() {
  tagOzKCamExtrinsic extrinsic;
  std::memset(&extrinsic, 0xA5, sizeof extrinsic);
  return extrinsic;
}

inline bool sameBytes(const tagOzKCamExtrinsic& a, const tagOzKCamExtrinsic& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool untouched(const tagOzKCamExtrinsic& extrinsic) {
  return sameBytes(extrinsic, foreignExtrinsic());
}

inline void expectElements(const tagOzKCamExtrinsic& actual, const tagOzKCamExtrinsic& expected,
                           double tolerance) {
  for (int k = 0; k < 16; ++k)
    EXPECT_NEAR(actual.data[k], expected.data[k], tolerance) << "element " << k;
}

} // namespace velmorn

#endif // VELMORN64_TESTS_GEOMETRY_EXTRINSICS_H
