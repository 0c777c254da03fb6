// The resolution of a board's picture.
#include "velmorn/print_resolution.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velmorn::tool {
namespace {

constexpr double kMostChange = 0.1;

// A square's pixels have to be a multiple of this: a code takes three quarters of the square, with
// an eighth left on either side, and a module takes whole pixels.
int squareStep(int modules) { return modules == 0 ? 1 : 8 * modules / std::gcd(6, modules); }

} // namespace

PrintResolution resolutionNear(const PrintedBoard& board, int modules, double dpi) {
  const double asked = board.spec.square * dpi / 25.4; // pixels per square
  const int step = squareStep(modules);
  const double whole = std::max(1.0, std::round(asked / step)) * step;

  PrintResolution resolution;
  resolution.wholePixels = std::abs(whole / asked - 1) <= kMostChange;
  const double pixelsPerSquare = resolution.wholePixels ? whole : asked;
  resolution.pixelsPerMillimetre = pixelsPerSquare / board.spec.square;
  if (modules > 0) resolution.pixelsPerModule = kCodeShare * pixelsPerSquare / modules;
  return resolution;
}

} // namespace velmorn::tool
