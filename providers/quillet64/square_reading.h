// The code in one white square.
#ifndef VELMORN64_PROVIDERS_QUILLET64_SQUARE_READING_H
#define VELMORN64_PROVIDERS_QUILLET64_SQUARE_READING_H

#include <optional>
#include <string>

#include <opencv2/core.hpp>

#include "quillet64/square_geometry.h"
#include "quillet64/square_look.h"

namespace velmorn::quillet {

// The work that one image may still cost, counted so that the result does not depend on the
// machine.
struct ReadingBudget {
  int samplings = 300;       // of all modules of one size
  long long shares = 300000; // of modules in pixels, over all deconvolutions
};

struct SquareText {
  std::string text;
  int turns = 0; // quarter turns after which the square's frame is the symbol's, see turnedQuad
};

// quad  the square's corners, to a fraction of a module
std::optional<SquareText> readSquare(const cv::Mat& grey, const Quad& quad, const SquareLook& look,
                                     ReadingBudget& budget);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_SQUARE_READING_H
