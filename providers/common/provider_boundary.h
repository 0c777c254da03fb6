// What the C functions of both libraries share: their first result codes, the guard, the image.
#ifndef VELMORN64_PROVIDERS_COMMON_PROVIDER_BOUNDARY_H
#define VELMORN64_PROVIDERS_COMMON_PROVIDER_BOUNDARY_H

#include <cstdint>

#include "datacode/imported_libraries.h"
#include "velmorn64.h"

namespace velmorn::provider {

// Results besides 0. -1110 and -1303 must never be among a library's: the product ends a whole run
// at these two, where it skips one image at any other.
constexpr std::int32_t kBadArgument = -1; // null handle or record
constexpr std::int32_t kBadImage = -2;    // null, not 8-bit grey, not the handle's size
constexpr std::int32_t kFailed = -3;      // out of memory or an error inside

// Runs the body of a C function and returns its result. Nothing thrown leaves the library.
template <typename Body>
std::int32_t guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return kFailed;
  }
}

// An 8-bit one-channel image of the handle's size.
inline bool isUsable(const tagOzKImage* image, const DataCodeImageSize& size) {
  return image != nullptr && image->type == kOzkImageOneChannel &&
         image->dataType == kOzkSample8U && image->data != nullptr &&
         static_cast<std::int32_t>(image->width) == size.width &&
         static_cast<std::int32_t>(image->height) == size.height;
}

} // namespace velmorn::provider

#endif // VELMORN64_PROVIDERS_COMMON_PROVIDER_BOUNDARY_H
