// Where the boards of a simulated rig are.
#ifndef VELMORN64_TOOLS_SIMULATE_SHOTS_H
#define VELMORN64_TOOLS_SIMULATE_SHOTS_H

#include <cstddef>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/simulate_job.h"
#include "velmorn/simulate_rig.h"

namespace velmorn::tool {

// One board position; image j of every camera shows position j.
struct BoardPosition {
  cv::Matx44d worldFromBoard = cv::Matx44d::eye();
  std::vector<std::size_t> absent; // cameras whose image does not have the board
};

// Neighbours in pairs along a conveyor, all cameras around a platform, unless the shots have groups
// of their own.
std::vector<std::vector<std::size_t>> groupsOf(const SimulateJob& job, const SimulatedShots& shots);

// The cameras whose images are to be without the board.
std::vector<std::size_t> absentFor(const SimulateJob& job, const SimulatedShots& shots,
                                   const std::vector<std::size_t>& group);

// How many length units a pixel covers at a distance of `share` of the cameras' height, in the
// camera with the coarsest one.
double unitsPerPixel(const SimulateJob& job, const SimulatedRig& rig, double share = 1);

// The round lengths next to the given one: 1, 1.5, 2, 2.5, ... 9.5 times a power of ten.
double roundedUp(double length);
double roundedDown(double length);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_SHOTS_H
