// What a depth camera's pixels cover at a working distance.
#include <cmath>

#include "foundation/boundary.h"
#include "foundation/truncation.h"

namespace velmorn {
namespace {

// Pi as cut off in existing hosts' figures.
constexpr double kTruncatedPi = 3.1415926;

// Larger than any coordinate that counts; what the extremes start from.
constexpr float kFarthest = 16777215.0F;

// Every step rounds to float, except the product with pi.
int sampleFactor(float fieldOfViewDegrees, int pixelCount, float distance) {
  const float halfTurns = fieldOfViewDegrees / 180.0F;
  const auto angle = static_cast<float>(static_cast<double>(halfTurns) * kTruncatedPi);
  const float width = std::tan(angle * 0.5F) * distance * 2.0F;
  return truncatedToInt(static_cast<double>(std::ceil(width / static_cast<float>(pixelCount))));
}

struct Extent {
  float min, max;
};

// Where the centres of the first and the last pixel of a row (or column) lie.
//
// pixels     pixels of the row; the last one's coordinate is computed in float
// centre     the row's coordinate of the principal point, pixels
// focal      focal length along the row, pixels
//
// A NaN takes no part in the extremes.
Extent fieldAlong(int pixels, double centre, double focal, float workDistance) {
  Extent extent{kFarthest, -kFarthest};
  for (const float u : {0.0F, static_cast<float>(pixels) - 1.0F}) {
    const auto x = static_cast<float>((static_cast<double>(u) - centre) / focal *
                                      static_cast<double>(workDistance));
    if (x < extent.min) extent.min = x;
    if (x > extent.max) extent.max = x;
  }
  return extent;
}

int fieldSize(int imageWidth, int imageHeight, const tagOzKCamIntrinsic* intrinsic,
              float workDistance, tagOzKRect2Df32* field) {
  if (intrinsic == nullptr || field == nullptr) return kOzkNullPointer;
  const double* m = intrinsic->matrix;
  const Extent x = fieldAlong(imageWidth, m[2], m[0], workDistance);
  const Extent y = fieldAlong(imageHeight, m[5], m[4], workDistance);
  *field = {x.min, y.min, x.max, y.max};
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCalDepthImgSampleFactor(float fieldOfViewDegrees, int pixelCount, float distance) {
  return velmorn::guarded(
      [&] { return velmorn::sampleFactor(fieldOfViewDegrees, pixelCount, distance); });
}

int ozkCalFieldSizeByWorkdistance(int imageWidth, int imageHeight,
                                  const tagOzKCamIntrinsic* intrinsic, float workDistance,
                                  tagOzKRect2Df32* field) {
  return velmorn::guarded(
      [&] { return velmorn::fieldSize(imageWidth, imageHeight, intrinsic, workDistance, field); });
}
