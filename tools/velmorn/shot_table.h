// The cameras and their shots as tables of an HTML page.
#ifndef VELMORN64_TOOLS_SHOT_TABLE_H
#define VELMORN64_TOOLS_SHOT_TABLE_H

#include <string>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// One row per camera: its link, its shots, and its place in the base camera's frame.
std::string cameraTable(const StitchRecord& record);

// One row per shot: whether it was used, or why not. Empty without shots.
std::string shotTable(const StitchRecord& record, const CameraRecord& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SHOT_TABLE_H
