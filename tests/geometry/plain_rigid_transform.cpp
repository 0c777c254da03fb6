#include "geometry/plain_rigid_transform.h"

#include <cmath>

namespace velmorn {
namespace {

cv::Vec3f centroid(const tagOzKPoint3Df32* points, int n) {
  double x = 0, y = 0, z = 0;
  for (int i = 0; i < n; ++i) {
    x += static_cast<double>(points[i].x);
    y += static_cast<double>(points[i].y);
    z += static_cast<double>(points[i].z);
  }
  return {static_cast<float>(x / n), static_cast<float>(y / n), static_cast<float>(z / n)};
}

cv::Mat centred(const tagOzKPoint3Df32* points, int n, const cv::Vec3f& c) {
  cv::Mat columns(3, n, CV_64FC1);
  for (int i = 0; i < n; ++i) {
    columns.at<double>(0, i) = static_cast<double>(points[i].x - c[0]);
    columns.at<double>(1, i) = static_cast<double>(points[i].y - c[1]);
    columns.at<double>(2, i) = static_cast<double>(points[i].z - c[2]);
  }
  return columns;
}

float residual(const tagOzKPoint3Df32& a, const tagOzKPoint3Df32& b, const cv::Mat& R,
               const cv::Mat& t) {
  const double from[3] = {static_cast<double>(a.x), static_cast<double>(a.y),
                          static_cast<double>(a.z)};
  const double to[3] = {static_cast<double>(b.x), static_cast<double>(b.y),
                        static_cast<double>(b.z)};
  double difference[3];
  for (int k = 0; k < 3; ++k) {
    const double p = R.at<double>(k, 0) * from[0] + R.at<double>(k, 1) * from[1] +
                     R.at<double>(k, 2) * from[2] + t.at<double>(k);
    difference[k] = std::abs(to[k] - p);
  }
  return static_cast<float>(std::sqrt(difference[0] * difference[0] +
                                      difference[1] * difference[1] +
                                      difference[2] * difference[2]));
}

} // namespace

void plainRigidTransform(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, cv::Mat& R,
                         cv::Mat& t, float* error) {
  const cv::Vec3f ca = centroid(a, n), cb = centroid(b, n);
  const cv::Mat A = centred(a, n, ca), B = centred(b, n, cb);
  const cv::Mat H = A * B.t();
  cv::Mat w, U, Vt;
  cv::SVDecomp(H, w, U, Vt, 0);
  cv::Mat D = cv::Mat::eye(3, 3, CV_64FC1);
  D.at<double>(2, 2) = cv::determinant(U * Vt);
  R = Vt.t() * D * U.t();

  t.create(3, 1, CV_64FC1);
  for (int k = 0; k < 3; ++k)
    t.at<double>(k) =
        static_cast<double>(cb[k]) - (R.at<double>(k, 0) * static_cast<double>(ca[0]) +
                                      R.at<double>(k, 1) * static_cast<double>(ca[1]) +
                                      R.at<double>(k, 2) * static_cast<double>(ca[2]));
  *error = 0;
  for (int i = 0; i < n; ++i) *error += residual(a[i], b[i], R, t);
  *error /= static_cast<float>(n);
}

} // namespace velmorn
