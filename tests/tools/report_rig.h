// A stitched rig of four cameras for reports: what a run writes, without running one.
#ifndef VELMORN64_TESTS_TOOLS_REPORT_RIG_H
#define VELMORN64_TESTS_TOOLS_REPORT_RIG_H

#include <cstddef>
#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "support/synthetic_rig.h"

namespace velmorn::tool {

// Cameras "cam1" to "cam4" around one board, the base "cam1"; "cam2" and "cam3" are linked to it,
// "cam4" to "cam3". Six shots each.
SyntheticRig reportRig();

// The result file of the rig: corners are the truth with noise, and the third shot of "cam2" shows
// no board. The images are named as writeReportImages names them.
nlohmann::json reportResult(const SyntheticRig& rig);

// Writes "cam1-1.png" and so on, one per camera and shot.
void writeReportImages(const SyntheticRig& rig, const std::filesystem::path& folder);

// A merged cloud in the frame of "cam1", a grid of count x count points per camera: a grey table
// behind the board with a block of kBlockRed, kBlockGreen, kBlockBlue on it.
constexpr int kBlockRed = 230;
constexpr int kBlockGreen = 20;
constexpr int kBlockBlue = 180;
std::string reportCloud(const SyntheticRig& rig, int count);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_REPORT_RIG_H
