// Reading and writing an extrinsic row by row.
#ifndef VELMORN64_GEOMETRY_EXTRINSIC_ROWS_H
#define VELMORN64_GEOMETRY_EXTRINSIC_ROWS_H

#include "geometry/vector3.h"
#include "velmorn64.h"

namespace velmorn {

// Row 0, 1 or 2 of the rotation: an axis of the target frame in source coordinates.
inline Vector3d rotationRow(const tagOzKCamExtrinsic& targetFromSource, int row) {
  const double* r = targetFromSource.data + 4 * row;
  return {r[0], r[1], r[2]};
}

inline Vector3d translationOf(const tagOzKCamExtrinsic& targetFromSource) {
  const double* e = targetFromSource.data;
  return {e[3], e[7], e[11]};
}

inline void setRow(tagOzKCamExtrinsic& targetFromSource, int row, const Vector3d& axis,
                   double translation) {
  double* r = targetFromSource.data + 4 * row;
  r[0] = axis.x;
  r[1] = axis.y;
  r[2] = axis.z;
  r[3] = translation;
}

// All zeros but the last element, 1: what the rows are written into.
inline tagOzKCamExtrinsic extrinsicWithoutRows() {
  tagOzKCamExtrinsic extrinsic{};
  extrinsic.data[15] = 1.0;
  return extrinsic;
}

} // namespace velmorn

#endif // VELMORN64_GEOMETRY_EXTRINSIC_ROWS_H
