// Boards that look the same after half a turn, whose first corner may be at either end.
#ifndef VELMORN64_TOOLS_HALF_TURN_H
#define VELMORN64_TOOLS_HALF_TURN_H

#include <string>

#include "velmorn/rig_file.h"
#include "velmorn/stitch_run.h"

namespace velmorn::tool {

// True when both numbers of inner corners are even, or both odd: half a turn then carries every
// square onto one of its own colour.
bool looksSameAfterHalfTurn(tagOzKSize board);

// What to say before a run with such a plain board; empty for every other rig.
std::string halfTurnWarning(const Rig& rig);

// Throws StitchFailure that names the two cameras of a link when the board looks the same after
// half a turn and the link's residual is above a quarter of a square: a board taken for its turned
// self is the likeliest cause.
void requireSameFirstCorner(const Rig& rig, const StitchedRig& stitched);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_HALF_TURN_H
