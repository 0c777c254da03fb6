// Ticks along one side of a picture.
#include "velmorn/map_axis.h"

#include <algorithm>

#include <opencv2/core.hpp>

#include "velmorn/round_numbers.h"

namespace velmorn::tool {

std::vector<MapTick> ticksAlong(const MapAxis& axis, int spacing) {
  const double step = roundNumberAtLeast(spacing * axis.unitsPerPixel);
  const double to = axis.from + axis.length * axis.unitsPerPixel;
  std::vector<MapTick> ticks;
  for (const double value : multiplesWithin(axis.from, to, step)) {
    const int pixel = cvRound((value - axis.from) / axis.unitsPerPixel);
    ticks.push_back({std::clamp(pixel, 0, axis.length), numberText(value, step)});
  }
  return ticks;
}

int spacingBeside(const MapAxis& axis, const LabelPen& pen) {
  // Wider steps may have shorter numbers; the first spacing that suffices is taken.
  int spacing = 5 * pen.height();
  for (;;) {
    const int needed = widestOf(ticksAlong(axis, spacing), pen) + 2 * pen.height();
    if (needed <= spacing || spacing > axis.length) return spacing;
    spacing = needed;
  }
}

int widestOf(const std::vector<MapTick>& ticks, const LabelPen& pen) {
  int widest = 0;
  for (const MapTick& tick : ticks) widest = std::max(widest, pen.widthOf(tick.text));
  return widest;
}

} // namespace velmorn::tool
