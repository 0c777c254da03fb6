// Aerial images: made and freed.
#include <cstddef>
#include <new>
#include <optional>

#include "depth/grid_size.h"
#include "foundation/boundary.h"

namespace velmorn {
namespace {

int createImage(const tagOzKRect2Df32* region, float resolution, tagOzKImage* image) {
  if (region == nullptr || image == nullptr) return kOzkNullPointer;
  const std::optional<GridSize> grid = aerialGridSize(*region, resolution);
  if (!grid) return kOzkBadSize;

  image->type = kOzkImageThreeChannels;
  image->width = static_cast<std::uint32_t>(grid->width);
  image->height = static_cast<std::uint32_t>(grid->height);
  const std::size_t bytes = std::size_t{3} * image->width * image->height;
  image->data = new (std::nothrow) unsigned char[bytes];
  return image->data != nullptr ? kOzkSuccess : kOzkComputationFailed;
}

void releaseImage(tagOzKImage* image) {
  if (image == nullptr) return;
  delete[] static_cast<unsigned char*>(image->data);
  image->data = nullptr;
}

} // namespace
} // namespace velmorn

int createAerialViewImg(const tagOzKRect2Df32* region, float resolution, tagOzKImage* image) {
  return velmorn::guarded([&] { return velmorn::createImage(region, resolution, image); });
}

void releaseAerialViewImg(tagOzKImage* image) {
  velmorn::guardedVoid([&] { velmorn::releaseImage(image); });
}
