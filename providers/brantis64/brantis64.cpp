// The extractor's C functions.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "brantis64/corner_extractor.h"
#include "datacode/imported_libraries.h"

namespace {

constexpr std::int32_t kBadArgument = -1;
constexpr std::int32_t kBadImage = -2;
constexpr std::int32_t kFailed = -3;

// Corners leave the library with the first pixel's centre at (0.5, 0.5).
constexpr float kPixelCentre = 0.5F;

struct Extractor {
  velmorn::DataCodeImageSize size{};
  velmorn::CalibConfig config{};
};

// Nothing thrown leaves the library.
template <typename Body>
std::int32_t guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return kFailed;
  }
}

bool isUsable(const tagOzKImage* image, const velmorn::DataCodeImageSize& size) {
  return image != nullptr && image->type == kOzkImageOneChannel &&
         image->dataType == kOzkSample8U && image->data != nullptr &&
         static_cast<std::int32_t>(image->width) == size.width &&
         static_cast<std::int32_t>(image->height) == size.height;
}

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
