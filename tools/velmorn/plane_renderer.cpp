// Pictures on a plane: one point of it per pixel corner, supersampling at edges.
#include "velmorn/plane_renderer.h"

#include <array>
#include <cmath>

#include <opencv2/imgproc.hpp>

namespace velmorn::tool {
namespace {

// Samples of a pixel that is not of one colour: a Fibonacci lattice, whose points all differ in x
// and in y. An edge along the pixels is then off by 1/178 pixel at most, where a square raster of
// as many samples would err by 1/18.
constexpr int kSamples = 89;
constexpr int kSampleStep = 55;

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

float shadeOf(const PlanePicture& picture, int area, float background) {
  return area == PlanePicture::kNoArea ? background : picture.shade(area);
}

// The mean shade of a pixel across an edge; inside the pixel the lens is as good as linear.
float meanShade(const PlanePicture& picture, const PixelCorners& corners, float background) {
  float sum = 0;
  for (int k = 0; k < kSamples; ++k) {
    const float fx = (static_cast<float>(k) + 0.5F) / kSamples;
    const float fy = (static_cast<float>(k * kSampleStep % kSamples) + 0.5F) / kSamples;
    const cv::Vec2f upper = corners[0] * (1 - fx) + corners[1] * fx;
    const cv::Vec2f lower = corners[2] * (1 - fx) + corners[3] * fx;
    sum += shadeOf(picture, picture.area(upper * (1 - fy) + lower * fy), background);
  }
  return sum / kSamples;
}

cv::Mat_<float> drawPicture(const PlanePicture& picture, const cv::Mat_<cv::Vec2f>& points,
                            const cv::Mat_<float>& background) {
  cv::Mat_<int> areas(points.size());
  for (int y = 0; y < points.rows; ++y)
    for (int x = 0; x < points.cols; ++x) areas(y, x) = picture.area(points(y, x));

  cv::Mat_<float> image(points.rows - 1, points.cols - 1);
  for (int y = 0; y < image.rows; ++y)
    for (int x = 0; x < image.cols; ++x) {
      const int area = areas(y, x);
      const bool oneColour =
          area == areas(y, x + 1) && area == areas(y + 1, x) && area == areas(y + 1, x + 1);
      const PixelCorners corners = {points(y, x), points(y, x + 1), points(y + 1, x),
                                    points(y + 1, x + 1)};
      image(y, x) = oneColour ? shadeOf(picture, area, background(y, x))
                              : meanShade(picture, corners, background(y, x));
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

cv::Mat_<float> PlaneRenderer::render(const PlanePicture& picture, double unit,
                                      const cv::Matx44d& camFromPlane,
                                      const cv::Mat_<float>& background) const {
  return drawPicture(picture, planePoints(rays_, unit, camFromPlane), background);
}

} // namespace velmorn::tool
