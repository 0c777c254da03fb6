// Point cloud files for tests, byte by byte.
#ifndef VELMORN64_TESTS_TOOLS_CLOUD_FILES_H
#define VELMORN64_TESTS_TOOLS_CLOUD_FILES_H

#include <string>
#include <vector>

#include "velmorn64.h"

namespace velmorn::tool {

using Points = std::vector<tagOzKPoint3Df32>;

// A grid of 20 x 15 points at distance 10 on the plane n p = 500, n = (0.1, 0.2, 1) / |...|, with
// `outliers` further points 50 above it.
Points gridOnPlane(int outliers = 0);

// The points as text, as many digits as single precision needs.
std::string xyzText(const Points& points);

enum class PlyForm { kText, kLittleEndian, kBigEndian };

// With a colour after the coordinates, and a face over the first three points.
std::string plyText(const Points& points, PlyForm form);

// With coordinates in double precision.
std::string plyTextInDoubles(const Points& points);

enum class PcdForm { kText, kBinary, kCompressed };

// With an intensity after the coordinates.
std::string pcdText(const Points& points, PcdForm form);

// The text with the first `from` in it as `to`. Throws when there is none.
std::string with(std::string text, const std::string& from, const std::string& to);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_CLOUD_FILES_H
