// RANSAC plane fit.
#include "geometry/plane_fit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "geometry/plane_least_squares.h"

namespace velmorn {
namespace {

constexpr unsigned kSeed = 1; // equal inputs give equal results
constexpr int kMaxIterations = 30000;
constexpr int kMaxDegenerateSamples = 30000;
constexpr int kLeastInliers = 3;
constexpr double kLeastExtent = 0.0001; // length unit
constexpr double kLeastNorm = 1e-6;
constexpr double kLeastProbability = 1e-6;

unsigned char* alignedTo16(void* address) {
  const auto value = reinterpret_cast<std::uintptr_t>(address);
  return static_cast<unsigned char*>(address) + ((~value + 1) & 15U);
}

// Where p1 lies between p0 and p2 along one axis, or 0. The extent's sign counts: where p2 lies
// below p0 the answer is 0 as well.
float ratioAlongAxis(float p0, float p1, float p2) {
  const float extent = p2 - p0;
  return static_cast<double>(extent) > kLeastExtent ? (p1 - p0) / extent : 0.0F;
}

// Meant for points on one line, but by the signed extents it also holds for a good sample whose p2
// lies below p0 on every axis, or for a right triangle along the axes, and it misses a line along
// one axis. Results depend on which samples are drawn again: it stays as it is.
bool isDegenerate(const float sample[9]) {
  const float rx = ratioAlongAxis(sample[0], sample[3], sample[6]);
  const float ry = ratioAlongAxis(sample[1], sample[4], sample[7]);
  const float rz = ratioAlongAxis(sample[2], sample[5], sample[8]);
  return rx == ry && ry == rz;
}

void drawThree(const tagOzKPoint3Df32* points, int n, float sample[9], int indices[3]) {
  for (int accepted = 0; accepted < 3;) {
    const int index = std::rand() % n;
    if (std::find(indices, indices + accepted, index) != indices + accepted) continue;
    const tagOzKPoint3Df32& point = points[index];
    float* slot = sample + 3 * accepted;
    slot[0] = point.x;
    slot[1] = point.y;
    slot[2] = point.z;
    indices[accepted++] = index;
  }
}

bool planeThrough(const float* points, int n, double plane[4]) {
  float centroid[3], axes[9];
  if (fitPlaneLeastSquares(points, centroid, axes, nullptr, n) != 0) return false;
  for (int k = 0; k < 3; ++k) plane[k] = static_cast<double>(axes[6 + k]);
  plane[3] =
      -(plane[0] * static_cast<double>(centroid[0]) + plane[1] * static_cast<double>(centroid[1]) +
        plane[2] * static_cast<double>(centroid[2]));
  return true;
}

double normalLength(const double plane[4]) {
  return std::sqrt(plane[0] * plane[0] + plane[1] * plane[1] + plane[2] * plane[2]);
}

// Distance times the length of the plane's normal.
double residual(const double plane[4], const tagOzKPoint3Df32& p) {
  return std::abs(plane[0] * static_cast<double>(p.x) + plane[1] * static_cast<double>(p.y) +
                  plane[2] * static_cast<double>(p.z) + plane[3]);
}

// Hypotheses are measured with a normal that counts as slightly too long; the final plane is not.
// The difference is intended.
int markHypothesisInliers(const tagOzKPoint3Df32* points, int n, const double plane[4],
                          double threshold, unsigned char* mask) {
  const double invNorm = 1.0 / (normalLength(plane) + 1e-6);
  int count = 0;
  for (int i = 0; i < n; ++i) {
    mask[i] = threshold > residual(plane, points[i]) * invNorm ? 1 : 0;
    count += mask[i];
  }
  return count;
}

int markFinalInliers(const tagOzKPoint3Df32* points, int n, const double plane[4], double threshold,
                     unsigned char* mask) {
  const double norm = normalLength(plane);
  if (norm < kLeastNorm) return -1;
  for (int i = 0; i < n; ++i) mask[i] = threshold > residual(plane, points[i]) / norm ? 1 : 0;
  return 0;
}

// Three floats per point whose mask byte is exactly 1, in point order.
int gatherInliers(const tagOzKPoint3Df32* points, int n, const unsigned char* mask,
                  float* inliers) {
  int count = 0;
  for (int i = 0; i < n; ++i) {
    if (mask[i] != 1) continue;
    inliers[0] = points[i].x;
    inliers[1] = points[i].y;
    inliers[2] = points[i].z;
    inliers += 3;
    ++count;
  }
  return count;
}

// The candidate mask, n bytes, is followed by the sample's indices.
int* indicesBehindMask(unsigned char* mask, int n) {
  return reinterpret_cast<int*>(mask + ((static_cast<std::size_t>(n) + 3) & ~std::size_t{3}));
}

} // namespace

int fitPlaneByRansacV2(const tagOzKPoint3Df32* points, int n, unsigned char* inlierMask,
                       double confidence, double threshold, double plane[4], void* workBuffer) {
  if (n < 3) return -1;
  std::srand(kSeed);
  unsigned char* const candidateMask = alignedTo16(workBuffer);
  int* const indices = indicesBehindMask(candidateMask, n);

  int best = 0;
  int maxIters = kMaxIterations;
  for (int iter = 0; iter < maxIters; ++iter) {
    float sample[9];
    if (sampleThreePlanePoints(points, n, sample, indices) != 0) {
      if (iter == 0) return -1;
      break;
    }
    double hypothesis[4];
    if (!planeThrough(sample, 3, hypothesis)) continue;
    const int count = markHypothesisInliers(points, n, hypothesis, threshold, candidateMask);
    if (count <= std::max(best, kLeastInliers - 1)) continue;

    std::copy(hypothesis, hypothesis + 4, plane);
    std::copy(candidateMask, candidateMask + n, inlierMask);
    best = count;
    maxIters = ransacUpdateIterCount(confidence, static_cast<double>(n - count) / n, n, maxIters);
  }

  auto* const inliers = reinterpret_cast<float*>(candidateMask);
  const int inlierCount = gatherInliers(points, n, inlierMask, inliers);
  if (inlierCount < kLeastInliers || !planeThrough(inliers, inlierCount, plane)) return -1;
  return markFinalInliers(points, n, plane, threshold, inlierMask);
}

int ransacUpdateIterCount(double confidence, double outlierRatio, int /*n*/, int maxIters) {
  const double p = std::min(std::max(confidence, 0.0), 1.0);
  const double inlierRatio = 1.0 - std::min(std::max(outlierRatio, 0.0), 1.0);
  double num = std::max(1.0 - p, kLeastProbability);
  double denom = 1.0 - inlierRatio * inlierRatio * inlierRatio;
  if (denom < kLeastProbability) return 0;

  num = std::log(num);
  denom = std::log(denom);
  if (denom >= 0 || !(-num < maxIters * -denom)) return maxIters; // a NaN ends here, too
  return static_cast<int>(num / denom + 0.5);
}

int sampleThreePlanePoints(const tagOzKPoint3Df32* points, int n, float sample[9], int indices[3]) {
  if (n < 3) return -1;
  for (int attempts = 0; attempts < kMaxDegenerateSamples; ++attempts) {
    drawThree(points, n, sample, indices);
    if (!isDegenerate(sample)) return 0;
  }
  return -1;
}

} // namespace velmorn
