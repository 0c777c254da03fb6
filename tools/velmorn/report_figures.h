// The numbers that a report gives of a run.
#ifndef VELMORN64_TOOLS_REPORT_FIGURES_H
#define VELMORN64_TOOLS_REPORT_FIGURES_H

#include <cstddef>
#include <optional>
#include <string>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// Cameras with a place in the base camera's frame.
std::size_t placedCameras(const StitchRecord& record);

// Root mean square over all corners of the used shots, pixels. Nothing without a used shot whose
// error and corners the file gives.
std::optional<double> reprojectionRms(const CameraRecord& camera);
std::optional<double> reprojectionRms(const StitchRecord& record);

// The largest residual of a link, length unit. Nothing when no link has one.
std::optional<double> largestResidual(const StitchRecord& record);

// Shots used, and all, of all cameras.
std::size_t shotsUsed(const StitchRecord& record);
std::size_t shotsTotal(const StitchRecord& record);

// A path of the record as seen from the result file's folder, for people.
std::string shownPath(const std::string& folder, const std::string& path);

// Why a shot was not used, in words.
std::string refusalText(const ShotRecord& shot);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_FIGURES_H
