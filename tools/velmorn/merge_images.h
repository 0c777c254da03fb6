// The images of a merged cloud.
#ifndef VELMORN64_TOOLS_MERGE_IMAGES_H
#define VELMORN64_TOOLS_MERGE_IMAGES_H

#include <cstddef>

#include "velmorn/camera_cloud.h"
#include "velmorn/merge_job.h"

namespace velmorn::tool {

// Reads the images of one of the job's cameras and drops what the job leaves out. Warns about a
// camera file for another size and about a camera without a usable sample. Throws ToolError that
// names the camera and the file.
CloudCamera readMergeCamera(const MergeJob& job, std::size_t index);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_MERGE_IMAGES_H
