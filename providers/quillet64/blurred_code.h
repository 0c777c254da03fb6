// How the modules of a code make up the pixels that show it.
#ifndef VELMORN64_PROVIDERS_QUILLET64_BLURRED_CODE_H
#define VELMORN64_PROVIDERS_QUILLET64_BLURRED_CODE_H

#include <vector>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"
#include "quillet64/square_look.h"

namespace velmorn::quillet {

// What one module adds to one pixel.
struct Share {
  int pixel;
  float weight;
};

// The pixels of a square as a linear picture of its modules:
//   seen = known + sum over modules weight * darkness.
struct BlurredCode {
  int modules = 0;                        // per side
  std::vector<float> seen;                // darkness of each pixel inside the square
  std::vector<float> known;               // darkness that the black neighbours spill into it
  std::vector<std::vector<Share>> shares; // per module, row by row
};

// blurSigma  pixels, of a Gaussian
BlurredCode blurredCode(const cv::Mat& grey, const Quad& quad, const SquareLook& look,
                        double blurSigma, int modules);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_BLURRED_CODE_H
