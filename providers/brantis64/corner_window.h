// The pixels around a crossing.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_WINDOW_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_WINDOW_H

#include <array>
#include <vector>

#include "brantis64/corner_task.h"

namespace velmorn::brantis {

// Pixels are kept in blocks, so that the compiler can do a block's pixels side by side.
constexpr std::size_t kLanes = 16;
using Lanes = std::array<float, kLanes>;

struct PixelBlock {
  Lanes x{}, y{}; // pixels from the crossing's supposed place
  Lanes grey{};
  Lanes weight{};                  // 1 far from any code, about 0 inside
  Lanes firstCode{}, secondCode{}; // share of either code in what the pixel sees
};

// The task's window; its last block is filled up with pixels of no weight. Returns false where it
// holds too few pixels.
bool collectWindow(const cv::Mat1b& grey, const CornerTask& task, std::vector<PixelBlock>& window);

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_WINDOW_H
