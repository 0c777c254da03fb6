// Rigid transform between two 3-D point sets: centroids, SVD, mean residual.
#include "geometry/rigid_transform.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "foundation/boundary.h"
#include "geometry/rigid_kernels.h"

namespace velmorn {
namespace {

// OpenCV's matrix product sums up to this many terms in one go ...
constexpr int kProductSinglePass = 10000;
// ... and more of them in blocks of this many (its block of 128 x 128 elements over 3 rows).
constexpr std::int64_t kProductBlock = 128 * 128 / 3;

// The number of pairs in the block that starts at pair `first`. A rest of less than an eighth of a
// block is joined to the block before it.
std::int64_t productBlockSize(std::int64_t first, std::int64_t n) {
  const std::int64_t end = first + kProductBlock;
  return end >= n || 8 * end + kProductBlock > 8 * n ? n - first : kProductBlock;
}

// H = sum (a - ca)(b - cb)^T, row-major. The bits are those of OpenCV's product of the centred 3 x
// n double matrices, A * B.t(), without the matrices: four interleaved partial sums per element in
// one pass, or two of them per block.
void covariance(const RigidKernels& kernels, const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b,
                int n, const float ca[3], const float cb[3], double H[9]) {
  if (n <= kProductSinglePass) {
    double sums[4][9] = {};
    kernels.addProducts4(a, b, n, ca, cb, sums);
    for (int k = 0; k < 9; ++k) H[k] = sums[0][k] + sums[1][k] + sums[2][k] + sums[3][k];
    return;
  }
  std::fill(H, H + 9, 0.0);
  for (std::int64_t first = 0; first < n;) {
    const std::int64_t size = productBlockSize(first, n);
    double sums[2][9] = {};
    std::copy(H, H + 9, sums[0]);
    kernels.addProducts2(a + first, b + first, static_cast<int>(size), ca, cb, sums);
    for (int k = 0; k < 9; ++k) H[k] = sums[0][k] + sums[1][k];
    first += size;
  }
}

// c = a * b. Summed from a zero on, as OpenCV's small products are: no element comes out as -0.
void multiply3x3(const double a[9], const double b[9], double c[9]) {
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) {
      double sum = 0;
      for (int k = 0; k < 3; ++k) sum += a[3 * row + k] * b[3 * k + column];
      c[3 * row + column] = sum;
    }
}

void transpose3x3(const double a[9], double transposed[9]) {
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column) transposed[3 * column + row] = a[3 * row + column];
}

// R = V D U^T from H = U W V^T.
void rotationFromCovariance(const cv::Matx33d& H, double R[9]) {
  cv::Matx31d w;
  cv::Matx33d U, Vt, UVt;
  cv::SVDecomp(H, w, U, Vt, 0);
  multiply3x3(U.val, Vt.val, UVt.val);

  // The determinant's value, not its sign: it is +1 or -1 only up to rounding, and hosts compare
  // results bit by bit. Through InputArray, as for a cv::Mat: the overload for Matx rounds
  // differently.
  const double d = cv::determinant(cv::InputArray(UVt));
  const double D[9] = {1, 0, 0, 0, 1, 0, 0, 0, d};

  double V[9], Ut[9], VD[9];
  transpose3x3(Vt.val, V);
  transpose3x3(U.val, Ut);
  multiply3x3(V, D, VD);
  multiply3x3(VD, Ut, R);
}

void centroid(const double sum[3], int n, float c[3]) {
  for (int k = 0; k < 3; ++k) c[k] = static_cast<float>(sum[k] / n);
}

bool is3x1Double(const cv::Mat& m) {
  return m.dims == 2 && m.rows == 3 && m.cols == 1 && m.type() == CV_64FC1 && m.data != nullptr;
}

// bFromA as the host gets it: row 0 of R, T and the last row in place, but rows 1 and 2 read 3 and
// 6 BYTES into R's storage where 3 and 6 elements were meant. Hosts rely on this exact content.
void writeMisalignedExtrinsic(const cv::Mat& R, const cv::Mat& t, tagOzKCamExtrinsic& extrinsic) {
  double* out = extrinsic.data;
  std::memset(out, 0, sizeof extrinsic.data);
  out[15] = 1.0;
  const auto* storage = reinterpret_cast<const unsigned char*>(R.ptr<double>());
  constexpr std::size_t kRowBytes = 3 * sizeof(double);
  std::memcpy(out, storage, kRowBytes);
  std::memcpy(out + 4, storage + 3, kRowBytes);
  std::memcpy(out + 8, storage + 6, kRowBytes);
  for (int k = 0; k < 3; ++k) out[4 * k + 3] = t.at<double>(k);
}

int exportRigidTransform(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n,
                         tagOzKCamExtrinsic* extrinsic, float* error) {
  if (a == nullptr || b == nullptr || extrinsic == nullptr || n < 3) return kOzkBadSize;

  cv::Mat R(3, 3, CV_64FC1), t;
  float residual = 0;
  const int status = calRTMatFrom3dPtTo3dPt(a, b, n, R, t, &residual);
  if (status != kOzkSuccess) return status;

  writeMisalignedExtrinsic(R, t, *extrinsic);
  if (error != nullptr) *error = residual;
  return kOzkSuccess;
}

} // namespace

int calRTMatFrom3dPtTo3dPt(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, cv::Mat& R,
                           cv::Mat& t, float* error) {
  if (n < 3 || a == nullptr || b == nullptr) return kOzkComputationFailed;
  static const RigidKernels& kernels = rigidKernels(supportedVectorLevel());

  double sumA[3] = {}, sumB[3] = {};
  kernels.addPoints(a, b, n, sumA, sumB);
  float ca[3], cb[3];
  centroid(sumA, n, ca);
  centroid(sumB, n, cb);

  cv::Matx33d H;
  double r[9];
  covariance(kernels, a, b, n, ca, cb, H.val);
  rotationFromCovariance(H, r);

  R.create(3, 3, CV_64FC1);
  for (int row = 0; row < 3; ++row) std::copy(r + 3 * row, r + 3 * row + 3, R.ptr<double>(row));
  if (!is3x1Double(t)) t = cv::Mat(3, 1, CV_64FC1);
  double translation[3];
  for (int k = 0; k < 3; ++k) {
    translation[k] = static_cast<double>(cb[k]) - (r[3 * k] * static_cast<double>(ca[0]) +
                                                   r[3 * k + 1] * static_cast<double>(ca[1]) +
                                                   r[3 * k + 2] * static_cast<double>(ca[2]));
    t.at<double>(k) = translation[k];
  }

  *error = kernels.addResiduals(a, b, n, r, translation, 0.0F) / static_cast<float>(n);
  return kOzkSuccess;
}

} // namespace velmorn

int ozkCalRTMatFrom3dPtTo3dPt(tagOzKPoint3Df32* a, tagOzKPoint3Df32* b, int n,
                              tagOzKCamExtrinsic* extrinsic, float* error) {
  return velmorn::guarded([&] { return velmorn::exportRigidTransform(a, b, n, extrinsic, error); });
}
