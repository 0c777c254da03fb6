// The extractor's C functions. They return 0 or a code of extractor_status.h:
//
//    -1  null pointer, or a number of seeds other than four
//    -2  image missing, of no size, not 8-bit grey or of another size than the handle's
//    -3  out of memory, or an error inside
//   -10  the seeds' board coordinates are not those of a square of the board's grid
//   -11  the seeds' pixels are no convex quadrangle
//   -12  the seeds go round the square the wrong way in the image: a mirror image
//   -13  a side between seeds is shorter than four pixels
//   -14  no corner of a board where the seeds say
//   -15  fewer than four corners, or all on one line
//
// A failed extraction leaves the result as it is. The configured square size is kept but not used:
// the seeds' board coordinates are more exact. Handles are independent of each other; one handle
// may extract on several threads as long as none configures or releases it.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "brantis64/corner_extractor.h"
#include "common/provider_boundary.h"
#include "datacode/imported_libraries.h"

namespace {

using velmorn::provider::guarded;
using velmorn::provider::isUsable;
using velmorn::provider::kBadArgument;
using velmorn::provider::kBadImage;

// Corners leave the library with the first pixel's centre at (0.5, 0.5).
constexpr float kPixelCentre = 0.5F;

struct Extractor {
  velmorn::DataCodeImageSize size{};
  velmorn::CalibConfig config{};
};

std::int32_t extract(const Extractor& extractor, const tagOzKImage* image,
                     const velmorn::CalibCornerSet& seed, velmorn::CalibCornerSet& result) {
  if (!isUsable(image, extractor.size)) return kBadImage;
  if (seed.count != 4) return kBadArgument;
  std::array<velmorn::brantis::BoardCorner, 4> seeds;
  for (std::size_t k = 0; k < 4; ++k)
    seeds[k] = {{seed.column[k], seed.row[k]}, {seed.worldX[k], seed.worldY[k]}};

  const cv::Mat grey(extractor.size.height, extractor.size.width, CV_8UC1, image->data);
  std::vector<velmorn::brantis::BoardCorner> corners;
  const int status = velmorn::brantis::extractCorners(grey, seeds, corners);
  if (status != 0) return status;

  const int count = std::min(static_cast<int>(corners.size()), velmorn::kCalibCornerSetCapacity);
  for (int i = 0; i < count; ++i) {
    const velmorn::brantis::BoardCorner& corner = corners[static_cast<std::size_t>(i)];
    result.column[i] = corner.pixel.x + kPixelCentre;
    result.row[i] = corner.pixel.y + kPixelCentre;
    result.worldX[i] = corner.onBoard.x;
    result.worldY[i] = corner.onBoard.y;
  }
  result.count = count;
  return 0;
}

} // namespace

std::int32_t calibCreate(void** handle, const velmorn::DataCodeImageSize* size) {
  return guarded([&] {
    if (handle == nullptr || size == nullptr) return kBadArgument;
    if (size->width < 1 || size->height < 1) return kBadImage;
    auto extractor = std::make_unique<Extractor>();
    extractor->size = *size;
    *handle = extractor.release();
    return std::int32_t{0};
  });
}

std::int32_t calibGetConfig(void* handle, velmorn::CalibConfig* config) {
  if (handle == nullptr || config == nullptr) return kBadArgument;
  *config = static_cast<Extractor*>(handle)->config;
  return 0;
}

std::int32_t calibSetConfig(void* handle, const velmorn::CalibConfig* config) {
  if (handle == nullptr || config == nullptr) return kBadArgument;
  static_cast<Extractor*>(handle)->config = *config;
  return 0;
}

std::int32_t calibCornerExtractExt(void* handle, const tagOzKImage* image,
                                   const velmorn::CalibCornerSet* seed,
                                   velmorn::CalibCornerSet* result) {
  return guarded([&] {
    if (handle == nullptr || seed == nullptr || result == nullptr) return kBadArgument;
    return extract(*static_cast<Extractor*>(handle), image, *seed, *result);
  });
}

std::int32_t calibRelease(void* handle) {
  if (handle == nullptr) return kBadArgument;
  delete static_cast<Extractor*>(handle);
  return 0;
}
