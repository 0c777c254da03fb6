// What a run would record of a synthetic rig, and ways to spoil it.
#ifndef VELMORN64_TESTS_TOOLS_RECORD_BUILDER_H
#define VELMORN64_TESTS_TOOLS_RECORD_BUILDER_H

#include <cstddef>

#include "support/synthetic_rig.h"
#include "velmorn/stitch_record.h"

namespace velmorn::tool {

constexpr double kRecordNoise = 0.05; // pixels

// Corners of every image as the rig's cameras see them, with noise.
CornerMap recordCorners(const SyntheticRig& rig);

// The corners as if the camera had been moved by `movedFromCam` before the shot and stayed there.
void moveFrom(const SyntheticRig& rig, std::size_t camera, std::size_t shot,
              const cv::Matx44d& movedFromCam, CornerMap& corners);

// The corners as if the camera had taken the board for turned by half a turn.
void turnBoards(const SyntheticRig& rig, std::size_t camera, CornerMap& corners);

// The record of a successful run: every camera at its true place, linked to the first one or, with
// `inChain`, to the one before; poses of the board by solvePnP with the rig's intrinsics.
StitchRecord recordOf(const SyntheticRig& rig, const CornerMap& corners, bool inChain = false);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_RECORD_BUILDER_H
