// Ticks along one side of a picture.
#ifndef VELMORN64_TOOLS_MAP_AXIS_H
#define VELMORN64_TOOLS_MAP_AXIS_H

#include <string>
#include <vector>

#include "velmorn/label_pen.h"

namespace velmorn::tool {

// One side of a picture.
struct MapAxis {
  double from = 0;          // value at its beginning, length unit
  double unitsPerPixel = 1; // length unit
  int length = 1;           // pixels
};

struct MapTick {
  int pixel = 0; // from the side's beginning, 0 to its length
  std::string text;
};

// Ticks at the multiples of a round step, at least `spacing` pixels from each other.
std::vector<MapTick> ticksAlong(const MapAxis& axis, int spacing);

// A spacing at which the numbers have room beside each other.
int spacingBeside(const MapAxis& axis, const LabelPen& pen);

// The width of the widest number, pixels; 0 without ticks.
int widestOf(const std::vector<MapTick>& ticks, const LabelPen& pen);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MAP_AXIS_H
