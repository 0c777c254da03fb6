// Turning a plane frame on the aerial image.
#ifndef VELMORN64_GEOMETRY_AERIAL_ADJUSTMENT_H
#define VELMORN64_GEOMETRY_AERIAL_ADJUSTMENT_H

#include "velmorn64.h"

namespace velmorn {

// R becomes Q R, where Q turns by angleDeg about the axis (R20, R21, R22). T and the last row stay.
//
// planeFromCam  in and out, not null
// angleDeg      degrees, with 3.141592 for pi
//
// The axis is the plane's normal in camera coordinates, but Q acts on the plane's side. Only for a
// camera that looks straight at the plane, where both are (0, 0, 1) or (0, 0, -1), is that a turn
// about the normal. Lets OpenCV's exceptions pass.
void rotateExtrinsicAboutPlaneNormal(tagOzKCamExtrinsic* planeFromCam, float angleDeg);

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_AERIAL_ADJUSTMENT_H
