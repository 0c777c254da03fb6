// Positions of a simulated plain board.
#ifndef VELMORN64_TOOLS_SIMULATE_PLAIN_SHOTS_H
#define VELMORN64_TOOLS_SIMULATE_PLAIN_SHOTS_H

#include <vector>

#include "velmorn/simulate_job.h"
#include "velmorn/simulate_rig.h"
#include "velmorn/simulate_shots.h"
#include "velmorn/simulate_view.h"

namespace velmorn::tool {

// The board, its squares as large as the search for corners wants them unless the job says it.
PlainBoard plainBoardOf(const SimulateJob& job, const SimulatedRig& rig);

// Positions above the ground that all cameras of a group see as a whole, tilted in different
// directions and spread over what the group sees in common. No camera sees a whole board whose
// first corner the search would take for another one. Throws ToolError when there is no position
// for a group.
std::vector<BoardPosition> plainShots(const SimulateJob& job, const SimulatedRig& rig,
                                      const PlainBoard& board);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_PLAIN_SHOTS_H
