// What the extraction returns; the codes above -10 are those of both libraries.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_EXTRACTOR_STATUS_H
#define VELMORN64_PROVIDERS_BRANTIS64_EXTRACTOR_STATUS_H

#include <cstdint>

namespace velmorn::brantis {

constexpr std::int32_t kFound = 0;
constexpr std::int32_t kNoUnitSquare = -10;    // the seeds' board coordinates are no grid square
constexpr std::int32_t kNoSquareInImage = -11; // the seeds' pixels are no convex quadrangle
constexpr std::int32_t kMirrored = -12;        // the seeds go round the other way in the image
constexpr std::int32_t kTooSmall = -13;        // a side of the seeds' square has too few pixels
constexpr std::int32_t kNoCornerAtSeeds = -14; // nothing looks like a corner of the board there
constexpr std::int32_t kTooFewCorners = -15;   // fewer than four corners, or all on one line

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_EXTRACTOR_STATUS_H
