// The library's operations on one extrinsic, with its statuses as messages.
#ifndef VELMORN64_TOOLS_EXTRINSIC_EDITS_H
#define VELMORN64_TOOLS_EXTRINSIC_EDITS_H

#include "velmorn/camera_file.h"
#include "velmorn64.h"

namespace velmorn::tool {

// newPlaneFromCam with its x axis along `axis`, camera coordinates. Throws ToolError for an axis
// without a direction or along the plane's normal.
tagOzKCamExtrinsic withNewXAxis(const tagOzKCamExtrinsic& planeFromCam, tagOzKPoint3Df32 axis);

// The part of a direction that lies within the plane: what withNewXAxis gives a rigid transform
// for.
tagOzKPoint3Df32 intoPlane(const tagOzKCamExtrinsic& planeFromCam, tagOzKPoint3Df32 direction);

// Moved by `step` as one of the modes 1 to 4 of adjustExtrinsicOnAerialImg does.
tagOzKCamExtrinsic nudged(const tagOzKCamExtrinsic& planeFromCam, float step, int mode);

// Turned by an angle, or back by it.
tagOzKCamExtrinsic turned(const tagOzKCamExtrinsic& planeFromCam, float degrees, bool back);

// A conveyor's x axis in the camera image.
struct ConveyorLine {
  tagOzKPoint2Df32 from{}; // pixel of the frame's origin
  tagOzKPoint2Df32 to{};   // pixel on the x axis
  int direction = -1;      // z axis: 0 to negative, 1 to positive camera z, -1 the plane's normal
};

// conveyorFromCam. The pixels' lens distortion is taken out first. Throws ToolError when a pixel
// does not see the plane, or both see the same point of it.
tagOzKCamExtrinsic conveyorAlong(const tagOzKCamExtrinsic& planeFromCam, const ConveyorLine& line,
                                 const CameraModel& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_EXTRINSIC_EDITS_H
