// Conversions to whole numbers that no value makes undefined.
#ifndef VELMORN64_FOUNDATION_TRUNCATION_H
#define VELMORN64_FOUNDATION_TRUNCATION_H

#include <limits>

namespace velmorn {

// Truncated toward zero. What an int cannot hold, NaN included, gives the smallest int, as the
// processor's own conversion does.
inline int truncatedToInt(double value) {
  constexpr double kBound = 2147483648.0;
  return value > -kBound - 1 && value < kBound ? static_cast<int>(value)
                                               : std::numeric_limits<int>::min();
}

} // namespace velmorn

#endif // VELMORN64_FOUNDATION_TRUNCATION_H
