// Pictures on a plane, as a pinhole camera with lens distortion sees them.
#ifndef VELMORN64_TESTS_SUPPORT_PLANE_RENDERER_H
#define VELMORN64_TESTS_SUPPORT_PLANE_RENDERER_H

#include <cstdint>

#include <opencv2/core.hpp>

#include "support/camera_model.h"

namespace velmorn {

// A picture made of areas of one shade. An area must not be thinner than a pixel, or must be
// convex.
class PlanePicture {
 public:
  virtual ~PlanePicture() = default;

  // A number for the area that a point lies in; the plane's own units.
  virtual int area(const cv::Vec2f& p) const = 0;

  // The grey level of an area.
  virtual float shade(int area) const = 0;
};

constexpr float kRenderedBlack = 25;
constexpr float kRenderedWhite = 230;
constexpr float kRenderedBackground = 128;

// What happens to the picture on its way to the file.
struct ImageEffects {
  double blurSigma = 0;  // pixels
  double noiseSigma = 0; // grey levels
  std::uint64_t seed = 1;
};

// Blurs, adds noise and rounds to 8 bits.
cv::Mat finishImage(cv::Mat_<float> image, const ImageEffects& effects);

// Renders images of one camera. What depends on the lens only is computed once per renderer, so
// keep one per camera.
class PlaneRenderer {
 public:
  explicit PlaneRenderer(const CameraModel& camera);

  cv::Size imageSize() const { return imageSize_; }

  // Grey levels before any effect.
  //
  // unit          length of the picture's unit in the unit of camFromPlane
  // camFromPlane  the plane is z = 0 of its frame
  cv::Mat_<float> render(const PlanePicture& picture, double unit,
                         const cv::Matx44d& camFromPlane) const;

 private:
  cv::Size imageSize_;
  cv::Mat_<cv::Vec2f> rays_; // x/z, y/z of the lines of sight through the pixels' own corners
};

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_PLANE_RENDERER_H
