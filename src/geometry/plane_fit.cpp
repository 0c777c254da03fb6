// RANSAC plane fit.
#include "geometry/plane_fit.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "geometry/plane_kernels.h"
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

// The plane through the points; its cutoff is not set yet.
bool planeThrough(const float* points, int n, PlaneTest& plane) {
  float centroid[3], axes[9];
  if (fitPlaneLeastSquares(points, centroid, axes, nullptr, n) != 0) return false;
  plane.a = static_cast<double>(axes[6]);
  plane.b = static_cast<double>(axes[7]);
  plane.c = static_cast<double>(axes[8]);
  plane.d =
      -(plane.a * static_cast<double>(centroid[0]) + plane.b * static_cast<double>(centroid[1]) +
        plane.c * static_cast<double>(centroid[2]));
  return true;
}

double normalLength(const PlaneTest& plane) {
  return std::sqrt(plane.a * plane.a + plane.b * plane.b + plane.c * plane.c);
}

void store(const PlaneTest& test, double plane[4]) {
  plane[0] = test.a;
  plane[1] = test.b;
  plane[2] = test.c;
  plane[3] = test.d;
}

// The largest magnitude that `accepts`, which holds for small magnitudes and fails from some one
// on; -1 when it fails for 0. Non-negative doubles are ordered like their bit patterns, so this is
// exact and needs no division or multiplication per point afterwards.
template <typename Accepts>
double largestAccepted(const Accepts& accepts) {
  if (!accepts(0.0)) return -1.0;
  const auto asDouble = [](std::uint64_t bits) {
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  };
  std::uint64_t accepted = 0, refused = 0x7FF0000000000000U; // 0 and infinity
  while (refused - accepted > 1) {
    const std::uint64_t middle = accepted + (refused - accepted) / 2;
    (accepts(asDouble(middle)) ? accepted : refused) = middle;
  }
  return asDouble(accepted);
}

// Hypotheses are measured with a normal that counts as slightly too long; the final plane is not.
// The difference is intended.
double hypothesisCutoff(const PlaneTest& plane, double threshold) {
  const double invNorm = 1.0 / (normalLength(plane) + 1e-6);
  return largestAccepted([&](double magnitude) { return threshold > magnitude * invNorm; });
}

double finalCutoff(double norm, double threshold) {
  return largestAccepted([&](double magnitude) { return threshold > magnitude / norm; });
}

// What the sampling found: the hypothesis with the most inliers, and their number.
struct Winner {
  PlaneTest plane{};
  int count = 0;
};

// Returns false when not even the first sample could be drawn.
bool findWinner(const PlaneKernels& kernels, const tagOzKPoint3Df32* points, int n,
                double confidence, double threshold, Winner& winner) {
  int maxIters = kMaxIterations;
  for (int iter = 0; iter < maxIters; ++iter) { // a sample without a plane counts as well
    float sample[9];
    int indices[3];
    if (sampleThreePlanePoints(points, n, sample, indices) != 0) return iter != 0;
    PlaneTest hypothesis{};
    if (!planeThrough(sample, 3, hypothesis)) continue;

    hypothesis.cutoff = hypothesisCutoff(hypothesis, threshold);
    const int toBeat = std::max(winner.count, kLeastInliers - 1);
    const int count = kernels.countInliers(points, n, hypothesis, toBeat);
    if (count <= toBeat) continue;
    winner = {hypothesis, count};
    maxIters = ransacUpdateIterCount(confidence, static_cast<double>(n - count) / n, n, maxIters);
  }
  return true;
}

// Three floats per point whose mask byte is exactly 1, in point order.
int gatherInliers(const tagOzKPoint3Df32* points, int n, const unsigned char* mask,
                  tagOzKPoint3Df32* inliers) {
  int count = 0;
  for (int i = 0; i < n; ++i) {
    if (mask[i] != 1) continue;
    inliers[count] = points[i];
    ++count;
  }
  return count;
}

} // namespace

int fitPlaneByRansacV2(const tagOzKPoint3Df32* points, int n, unsigned char* inlierMask,
                       double confidence, double threshold, double plane[4], void* workBuffer) {
  if (n < 3) return -1;
  static const PlaneKernels& kernels = planeKernels(supportedVectorLevel());
  std::srand(kSeed);

  Winner winner;
  if (!findWinner(kernels, points, n, confidence, threshold, winner)) return -1;
  // Only the last winner's plane and mask are ever seen, so they are written once. Without a winner
  // both stay as the caller left them.
  if (winner.count > 0) {
    store(winner.plane, plane);
    kernels.markInliers(points, n, winner.plane, inlierMask);
  }

  auto* const inliers = reinterpret_cast<tagOzKPoint3Df32*>(alignedTo16(workBuffer));
  const int inlierCount = gatherInliers(points, n, inlierMask, inliers);
  PlaneTest refit{};
  if (inlierCount < kLeastInliers || !planeThrough(&inliers->x, inlierCount, refit)) return -1;
  store(refit, plane);
  const double norm = normalLength(refit);
  if (norm < kLeastNorm) return -1;
  refit.cutoff = finalCutoff(norm, threshold);
  kernels.markInliers(points, n, refit, inlierMask);
  return 0;
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
