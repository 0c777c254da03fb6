// Positions of a simulated data-code board.
#ifndef VELMORN64_TOOLS_SIMULATE_CODE_SHOTS_H
#define VELMORN64_TOOLS_SIMULATE_CODE_SHOTS_H

#include <vector>

#include "velmorn/code_board.h"
#include "velmorn/simulate_job.h"
#include "velmorn/simulate_rig.h"
#include "velmorn/simulate_shots.h"

namespace velmorn::tool {

// The board. Unless the job says it, its squares are as large as the reader wants them and so many
// that it covers most of the ground that the cameras see.
CodeBoardSpec codeBoardOf(const SimulateJob& job, const SimulatedRig& rig);

// Positions a little above the ground and a little tilted, the board's middle over that of the
// ground that the cameras see.
std::vector<BoardPosition> codeShots(const SimulateJob& job, const SimulatedRig& rig,
                                     const CodeBoardSpec& board);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_CODE_SHOTS_H
