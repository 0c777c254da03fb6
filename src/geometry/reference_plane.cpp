// The reference plane's extrinsic: robust plane, frame in it, mean distance.
#include <cmath>
#include <cstdlib>
#include <memory>

#include "foundation/boundary.h"
#include "foundation/log.h"
#include "geometry/extrinsic_rows.h"
#include "geometry/plane_fit.h"
#include "geometry/plane_least_squares.h"

namespace velmorn {
namespace {

constexpr double kConfidence = 0.999;
constexpr double kLeastAxisLength = 1e-6; // of the camera's unit x axis, projected into the plane
constexpr std::size_t kWorkBytesPerPoint = 12;

// Taken from malloc: a failure is told by its result and has a message of its own.
struct Free {
  void operator()(unsigned char* bytes) const { std::free(bytes); }
};
using Bytes = std::unique_ptr<unsigned char, Free>;

// Never a request for nothing, which may be answered by a null pointer: too few points are the
// fit's to refuse.
std::size_t bytesFor(int n, std::size_t bytesPerPoint) {
  return n < 1 ? 1 : static_cast<std::size_t>(n) * bytesPerPoint;
}

int logAllocationFailure(int n, double bytes) {
  writeLog(kLogPath, "malloc error.ptNum is %d.needed memory is %f MB\n", n, bytes / 1024 / 1024);
  return kOzkComputationFailed;
}

// The mask starts from zeros: the fit does not write it when no hypothesis has three inliers.
int fitInliers(const tagOzKPoint3Df32* points, int n, float threshold, Bytes& mask,
               double plane[4]) {
  mask.reset(static_cast<unsigned char*>(std::calloc(bytesFor(n, 1), 1)));
  if (mask == nullptr) return logAllocationFailure(n, n);

  const Bytes workBuffer(static_cast<unsigned char*>(std::malloc(bytesFor(n, kWorkBytesPerPoint))));
  if (workBuffer == nullptr) {
    static_cast<void>(mask.release()); // not freed on this one path; kept as it has always been
    return logAllocationFailure(n, 12.0 * n);
  }
  const int status = fitPlaneByRansacV2(points, n, mask.get(), kConfidence,
                                        static_cast<double>(threshold), plane, workBuffer.get());
  if (status != kOzkSuccess)
    writeLog(kLogPath, "fitPlaneByRansacV2 failed.return value is %d.ptNum is %d.\n", status, n);
  return status;
}

// Mean of the points whose byte is set; false when there are none.
bool inlierCentroid(const tagOzKPoint3Df32* points, int n, const unsigned char* mask, Vector3f& G) {
  Vector3f sum{0, 0, 0};
  int count = 0;
  for (int i = 0; i < n; ++i) {
    if (mask[i] == 0) continue;
    sum = sum + Vector3f{points[i].x, points[i].y, points[i].z};
    ++count;
  }
  if (count == 0) return false;
  G = sum / static_cast<float>(count);
  return true;
}

// The axes of a frame in the plane, in camera coordinates.
struct PlaneAxes {
  Vector3f X, Y, N;
};

// X is the camera's x axis projected into the plane, through a basis U, W of the plane whose U lies
// in the camera's x-z plane. A normal along the camera's y axis has no such U: every axis but N
// comes out as NaN then, and passes the test of the length. False when the camera's x axis is
// perpendicular to the plane.
bool axesInPlane(const Vector3f& N, PlaneAxes& axes) {
  const float length = std::sqrt(N.z * N.z + N.x * N.x);
  const Vector3f U{-N.z / length, 0.0F, N.x / length};
  const Vector3f W = cross(N, U);
  const Vector3f projected = W * W.x + U * U.x;
  const float projectedLength = std::sqrt(dot(projected, projected));
  if (static_cast<double>(projectedLength) < kLeastAxisLength) return false;

  axes.N = N;
  axes.X = projected / projectedLength;
  axes.Y = cross(N, axes.X);
  return true;
}

float meanDistance(const PlaneAxes& axes, const Vector3f& G, const tagOzKPoint3Df32* points,
                   int n) {
  const float rows[9] = {axes.X.x, axes.X.y, axes.X.z, axes.Y.x, axes.Y.y,
                         axes.Y.z, axes.N.x, axes.N.y, axes.N.z};
  const float origin[3] = {G.x, G.y, G.z};
  return meanPointToPlaneDistance(rows, origin, points, n);
}

// Turns the z axis towards the camera. Y stays: with both others turned, the frame is right-handed.
void faceCamera(PlaneAxes& axes) {
  if (!(axes.N.z > 0)) return;
  axes.N = -axes.N;
  axes.X = -axes.X;
}

tagOzKCamExtrinsic planeFromCamera(const PlaneAxes& axes, const Vector3f& G) {
  tagOzKCamExtrinsic extrinsic = extrinsicWithoutRows();
  const Vector3f rows[3] = {axes.X, axes.Y, axes.N};
  for (int r = 0; r < 3; ++r) {
    const float alongRow = static_cast<float>(dot(widened(rows[r]), widened(G)));
    setRow(extrinsic, r, widened(rows[r]), static_cast<double>(-alongRow));
  }
  return extrinsic;
}

int calRefPlane(const tagOzKPoint3Df32* points, int n, float threshold,
                tagOzKCamExtrinsic* extrinsic, float* error) {
  if (points == nullptr || extrinsic == nullptr) return kOzkNullPointer;

  Bytes mask;
  double plane[4];
  const int status = fitInliers(points, n, threshold, mask, plane);
  if (status != kOzkSuccess) return status;

  Vector3f G;
  if (!inlierCentroid(points, n, mask.get(), G)) return kOzkComputationFailed;
  mask.reset();

  PlaneAxes axes;
  if (!axesInPlane(narrowed({plane[0], plane[1], plane[2]}), axes)) return kOzkGeometryFailed2;
  if (error != nullptr) *error = meanDistance(axes, G, points, n);
  faceCamera(axes);
  *extrinsic = planeFromCamera(axes, G);
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkCalRefPlaneExtrinsic(tagOzKPoint3Df32* points, int n, float threshold,
                            tagOzKCamExtrinsic* extrinsic, float* error) {
  return velmorn::guarded(
      [&] { return velmorn::calRefPlane(points, n, threshold, extrinsic, error); });
}
