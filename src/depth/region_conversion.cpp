// Rectangles and points between an image's pixels and the region that the image spans.
#include <utility>

#include "foundation/boundary.h"

namespace velmorn {
namespace {

int checkConversion(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                    const void* out) {
  if (out == nullptr) return kOzkNullPointer;
  if (imageWidth == 0 || imageHeight == 0) return kOzkBadSize;
  return region == nullptr ? kOzkNullPointer : kOzkSuccess;
}

tagOzKRect2Df32 normalised(tagOzKRect2Df32 rect) {
  if (rect.x1 > rect.x2) std::swap(rect.x1, rect.x2);
  if (rect.y1 > rect.y2) std::swap(rect.y1, rect.y2);
  return rect;
}

tagOzKRect2Df32 regionFromImage(const tagOzKRect2Df32& region, float imageWidth, float imageHeight,
                                const tagOzKRect2Df32& rect) {
  const float sx = (region.x2 - region.x1) / imageWidth; // length units per pixel
  const float sy = (region.y2 - region.y1) / imageHeight;
  return {sx * rect.x1 + region.x1, sy * rect.y1 + region.y1, sx * rect.x2 + region.x1,
          sy * rect.y2 + region.y1};
}

tagOzKRect2Df32 imageFromRegion(const tagOzKRect2Df32& region, float imageWidth, float imageHeight,
                                const tagOzKRect2Df32& rect) {
  const float kx = imageWidth / (region.x2 - region.x1); // pixels per length unit
  const float ky = imageHeight / (region.y2 - region.y1);
  return {(rect.x1 - region.x1) * kx, (rect.y1 - region.y1) * ky, (rect.x2 - region.x1) * kx,
          (rect.y2 - region.y1) * ky};
}

using RectConversion = tagOzKRect2Df32 (*)(const tagOzKRect2Df32& region, float imageWidth,
                                           float imageHeight, const tagOzKRect2Df32& rect);

int convertRect(RectConversion convert, const tagOzKRect2Df32* region, int imageWidth,
                int imageHeight, const tagOzKRect2Df32& rect, tagOzKRect2Df32* out) {
  const int status = checkConversion(region, imageWidth, imageHeight, out);
  if (status != kOzkSuccess) return status;
  *out = convert(*region, static_cast<float>(imageWidth), static_cast<float>(imageHeight),
                 normalised(rect));
  return kOzkSuccess;
}

tagOzKPoint2Df32 regionPoint(const tagOzKRect2Df32& region, float imageWidth, float imageHeight,
                             const tagOzKPoint2Df32& p) {
  return {region.x1 + p.x * (region.x2 - region.x1) / imageWidth,
          region.y1 + p.y * (region.y2 - region.y1) / imageHeight};
}

void write(const tagOzKPoint2Df32& p, tagOzKPoint2Df32& out) { out = p; }
void write(const tagOzKPoint2Df32& p, tagOzKPoint3Df32& out) { out = {p.x, p.y, 0.0F}; }

template <typename Point>
int convertPoint(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                 const tagOzKPoint2Df32& imagePoint, Point* out) {
  const int status = checkConversion(region, imageWidth, imageHeight, out);
  if (status != kOzkSuccess) return status;
  write(regionPoint(*region, static_cast<float>(imageWidth), static_cast<float>(imageHeight),
                    imagePoint),
        *out);
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCvtImgRect2MesureRegion(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                               tagOzKRect2Df32 imageRect, tagOzKRect2Df32* out) {
  return velmorn::guarded([&] {
    return velmorn::convertRect(velmorn::regionFromImage, region, imageWidth, imageHeight,
                                imageRect, out);
  });
}

int ozkCvtMesureRegion2ImgRect(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                               tagOzKRect2Df32 measureRect, tagOzKRect2Df32* out) {
  return velmorn::guarded([&] {
    return velmorn::convertRect(velmorn::imageFromRegion, region, imageWidth, imageHeight,
                                measureRect, out);
  });
}

int ozkCvtImgP2CamPt(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                     tagOzKPoint2Df32 imagePoint, tagOzKPoint2Df32* out) {
  return velmorn::guarded(
      [&] { return velmorn::convertPoint(region, imageWidth, imageHeight, imagePoint, out); });
}

int ozkCvtImgP2CamPt(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                     tagOzKPoint2Df32 imagePoint, tagOzKPoint3Df32* out) {
  return velmorn::guarded(
      [&] { return velmorn::convertPoint(region, imageWidth, imageHeight, imagePoint, out); });
}
