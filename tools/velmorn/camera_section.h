// What the report's page says of one camera.
#ifndef VELMORN64_TOOLS_CAMERA_SECTION_H
#define VELMORN64_TOOLS_CAMERA_SECTION_H

#include <cstddef>
#include <string>
#include <vector>

#include "velmorn/stitch_record.h"
#include "velmorn/thumbnails.h"

namespace velmorn::tool {

// A <section> with the camera's key figures, charts, shots and pictures.
//
// pictures    of the camera's shots, in their order
// errorScale  end of the bar chart's scale, pixels
std::string cameraSection(const StitchRecord& record, std::size_t camera,
                          const std::vector<ShotPicture>& pictures, double errorScale);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CAMERA_SECTION_H
