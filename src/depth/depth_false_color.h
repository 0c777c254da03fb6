// Depths as colours, by a cumulative histogram.
#ifndef VELMORN64_DEPTH_DEPTH_FALSE_COLOR_H
#define VELMORN64_DEPTH_DEPTH_FALSE_COLOR_H

#include <cstdint>

namespace velmorn {

// Value of a cell without a sample.
constexpr unsigned short kEmptyCell = 65535;

// Colours a grid of depths: with e = 255 times the share of covered cells that are not farther, in
// whole numbers, a cell becomes e, the triangle 2 min(e, 255 - e), 255 - e. Empty cells, and all
// cells of a grid without a covered one, become black.
//
// depth   width * height values, kEmptyCell where there is none
// output  out, width * height * 3 bytes apart from depth; holds intermediate results on the way
//
// e is computed in 32 bits: the running count times 255 wraps around above 16.8 million covered
// cells. Returns 0, or -1 with output untouched when there is no memory for the tables.
int renderDepthFalseColor(const unsigned short* depth, int width, int height,
                          unsigned char* output);

// Tables of a rendering. Neighbours often have the same depth; two tables in turn spare most of the
// waiting for a count that was just written.
struct DepthCounts {
  int depths; // the tables are in use for the depths below
  std::uint32_t even[kEmptyCell + 1], odd[kEmptyCell + 1];
};

// The same with tables of the caller's, whatever is in them.
void renderDepthFalseColor(const unsigned short* depth, int width, int height,
                           unsigned char* output, DepthCounts& counts);

} // namespace velmorn

#endif // VELMORN64_DEPTH_DEPTH_FALSE_COLOR_H
