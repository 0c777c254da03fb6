// Pictures on a plane, as a camera sees them.
#ifndef VELMORN64_TOOLS_PLANE_RENDERER_H
#define VELMORN64_TOOLS_PLANE_RENDERER_H

#include <cstdint>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// A picture made of areas of one shade. An area must not be thinner than a pixel, or must be
// convex.
class PlanePicture {
 public:
  static constexpr int kNoArea = -1; // outside the picture; what is behind it shows

  virtual ~PlanePicture() = default;

  // A number for the area that a point lies in, or kNoArea; the plane's own units.
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
  // x/z and y/z of the lines of sight through the pixels' own corners: entry (y, x) is at image
  // point (x - 0.5, y - 0.5), so there is one row and one column more than the image has.
  explicit PlaneRenderer(const cv::Mat_<cv::Vec2f>& cornerRays) : rays_(cornerRays) {}

  cv::Size imageSize() const { return {rays_.cols - 1, rays_.rows - 1}; }

  // Grey levels before any effect.
  //
  // unit          length of the picture's unit in the unit of camFromPlane
  // camFromPlane  the plane is z = 0 of its frame
  // background    grey levels of what is behind, of the image's size
  cv::Mat_<float> render(const PlanePicture& picture, double unit, const cv::Matx44d& camFromPlane,
                         const cv::Mat_<float>& background) const;

 private:
  cv::Mat_<cv::Vec2f> rays_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLANE_RENDERER_H
