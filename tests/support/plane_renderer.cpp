// Pictures on a plane: lens inversion on a pixel lattice, supersampling at edges.
#include "support/plane_renderer.h"

#include <array>
#include <cmath>

#include <opencv2/imgproc.hpp>

namespace velmorn {
namespace {

// Samples of a pixel that is not of one colour: a Fibonacci lattice, whose points all differ in x
// and in y. An edge along the pixels is then off by 1/178 pixel at most, where a square raster of
// as many samples would err by 1/18.
constexpr int kSamples = 89;
constexpr int kSampleStep = 55;

// Undoes the distortion of one normalised point by fixed-point iteration, far below a hundredth of
// a pixel for the lenses of the tests.
cv::Vec2d undistort(const cv::Vec<double, 12>& k, const cv::Vec2d& distorted) {
  constexpr int kIterations = 100;
  constexpr double kDone = 1e-10;
  cv::Vec2d p = distorted;
  for (int i = 0; i < kIterations; ++i) {
    const double x = p[0], y = p[1], r2 = x * x + y * y, r4 = r2 * r2, r6 = r4 * r2;
    const double radial =
        (1 + k[0] * r2 + k[1] * r4 + k[4] * r6) / (1 + k[5] * r2 + k[6] * r4 + k[7] * r6);
    const cv::Vec2d shift(2 * k[2] * x * y + k[3] * (r2 + 2 * x * x) + k[8] * r2 + k[9] * r4,
                          k[2] * (r2 + 2 * y * y) + 2 * k[3] * x * y + k[10] * r2 + k[11] * r4);
    const cv::Vec2d next = (distorted - shift) * (1 / radial);
    const double step = cv::norm(next - p);
    p = next;
    if (step < kDone) break;
  }
  return p;
}

// The lines of sight through the pixels' corners: entry (y, x) is at image point (x - 0.5, y -
// 0.5).
cv::Mat_<cv::Vec2f> cornerRays(const CameraModel& camera) {
  const cv::Matx33d& K = camera.matrix;
  cv::Mat_<cv::Vec2f> rays(camera.imageSize.height + 1, camera.imageSize.width + 1);
  for (int y = 0; y < rays.rows; ++y)
    for (int x = 0; x < rays.cols; ++x) {
      const cv::Vec2d seen((x - 0.5 - K(0, 2)) / K(0, 0), (y - 0.5 - K(1, 2)) / K(1, 1));
      rays(y, x) = undistort(camera.distortion, seen);
    }
  return rays;
}

// Where the lines of sight meet the plane, in its units; far away where they do not.
cv::Mat_<cv::Vec2f> planePoints(const cv::Mat_<cv::Vec2f>& rays, double unit,
                                const cv::Matx44d& camFromPlane) {
  const cv::Matx44d& m = camFromPlane;
  const cv::Matx33d imageFromPlane(m(0, 0), m(0, 1), m(0, 3), m(1, 0), m(1, 1), m(1, 3), m(2, 0),
                                   m(2, 1), m(2, 3));
  const cv::Matx33d h = imageFromPlane.inv() * (1 / unit);
  cv::Mat_<cv::Vec2f> points(rays.size());
  for (int y = 0; y < rays.rows; ++y)
    for (int x = 0; x < rays.cols; ++x) {
      const double rx = static_cast<double>(rays(y, x)[0]), ry = static_cast<double>(rays(y, x)[1]);
      const double w = (h(2, 0) * rx + h(2, 1) * ry + h(2, 2)) * unit; // 1 / depth
      const double u = h(0, 0) * rx + h(0, 1) * ry + h(0, 2);
      const double v = h(1, 0) * rx + h(1, 1) * ry + h(1, 2);
      points(y, x) = w > 0 ? cv::Vec2f(static_cast<float>(u / w), static_cast<float>(v / w))
                           : cv::Vec2f(1e6F, 1e6F);
    }
  return points;
}

using PixelCorners = std::array<cv::Vec2f, 4>; // upper left, upper right, lower left, lower right

// The mean shade of a pixel across an edge; inside the pixel the lens is as good as linear.
float meanShade(const PlanePicture& picture, const PixelCorners& corners) {
  float sum = 0;
  for (int k = 0; k < kSamples; ++k) {
    const float fx = (static_cast<float>(k) + 0.5F) / kSamples;
    const float fy = (static_cast<float>(k * kSampleStep % kSamples) + 0.5F) / kSamples;
    const cv::Vec2f upper = corners[0] * (1 - fx) + corners[1] * fx;
    const cv::Vec2f lower = corners[2] * (1 - fx) + corners[3] * fx;
    sum += picture.shade(picture.area(upper * (1 - fy) + lower * fy));
  }
  return sum / kSamples;
}

cv::Mat_<float> drawPicture(const PlanePicture& picture, const cv::Mat_<cv::Vec2f>& points) {
  cv::Mat_<int> areas(points.size());
  for (int y = 0; y < points.rows; ++y)
    for (int x = 0; x < points.cols; ++x) areas(y, x) = picture.area(points(y, x));

  cv::Mat_<float> image(points.rows - 1, points.cols - 1);
  for (int y = 0; y < image.rows; ++y)
    for (int x = 0; x < image.cols; ++x) {
      const int area = areas(y, x);
      const bool oneColour =
          area == areas(y, x + 1) && area == areas(y + 1, x) && area == areas(y + 1, x + 1);
      image(y, x) = oneColour ? picture.shade(area)
                              : meanShade(picture, {points(y, x), points(y, x + 1),
                                                    points(y + 1, x), points(y + 1, x + 1)});
    }
  return image;
}

} // namespace

cv::Mat finishImage(cv::Mat_<float> image, const ImageEffects& effects) {
  if (effects.blurSigma > 0) cv::GaussianBlur(image, image, cv::Size(), effects.blurSigma);
  if (effects.noiseSigma > 0) {
    cv::Mat_<float> noise(image.size());
    cv::RNG(effects.seed).fill(noise, cv::RNG::NORMAL, 0, effects.noiseSigma);
    image += noise;
  }
  cv::Mat grey;
  image.convertTo(grey, CV_8U);
  return grey;
}

PlaneRenderer::PlaneRenderer(const CameraModel& camera)
    : imageSize_(camera.imageSize), rays_(cornerRays(camera)) {}

cv::Mat_<float> PlaneRenderer::render(const PlanePicture& picture, double unit,
                                      const cv::Matx44d& camFromPlane) const {
  return drawPicture(picture, planePoints(rays_, unit, camFromPlane));
}

} // namespace velmorn
