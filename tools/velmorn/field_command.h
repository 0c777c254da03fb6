// `velmorn field`: what a camera covers at a distance.
#ifndef VELMORN64_TOOLS_FIELD_COMMAND_H
#define VELMORN64_TOOLS_FIELD_COMMAND_H

#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

struct FieldOptions {
  float distance = 0;     // from the camera, length unit
  std::string intrinsics; // camera file; empty when the angle of view is given
  cv::Size imageSize;     // pixels; empty for the camera file's own
  float degrees = 0;      // angle of view along the pixels
  int pixels = 0;
};

// The result goes to the standard output. Throws ToolError.
void runField(const FieldOptions& options);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_FIELD_COMMAND_H
