// The rigid fit's passes for processors with AVX2: four points, or their four sums, at once.
#include "geometry/point_loads_avx2.h"
#include "geometry/rigid_kernels.h"

namespace velmorn {
namespace {

FourPoints centred(const FourPoints& p, const __m128 c[3]) {
  return {_mm_sub_ps(p.x, c[0]), _mm_sub_ps(p.y, c[1]), _mm_sub_ps(p.z, c[2])};
}

void broadcast(const float from[3], __m128 to[3]) {
  for (int k = 0; k < 3; ++k) to[k] = _mm_set1_ps(from[k]);
}

// One vector holds x, y, z and the next point's x, which is never used.
void addPoints(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, double sumA[3],
               double sumB[3]) {
  __m256d vectorA = _mm256_setr_pd(sumA[0], sumA[1], sumA[2], 0);
  __m256d vectorB = _mm256_setr_pd(sumB[0], sumB[1], sumB[2], 0);
  int i = 0;
  for (; i < n - 1; ++i) {
    vectorA = _mm256_add_pd(vectorA, _mm256_cvtps_pd(_mm_loadu_ps(&a[i].x)));
    vectorB = _mm256_add_pd(vectorB, _mm256_cvtps_pd(_mm_loadu_ps(&b[i].x)));
  }
  double lanesA[4], lanesB[4];
  _mm256_storeu_pd(lanesA, vectorA);
  _mm256_storeu_pd(lanesB, vectorB);
  for (int k = 0; k < 3; ++k) {
    sumA[k] = lanesA[k];
    sumB[k] = lanesB[k];
  }
  plainRigidKernels().addPoints(a + i, b + i, n - i, sumA, sumB);
}

__m256d multiplyAdd(__m256d sum, __m256d x, __m256d y) {
  return _mm256_add_pd(sum, _mm256_mul_pd(x, y)); // two roundings, on purpose
}

// A vector's lanes are the four partial sums of one element.
void addProducts4(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const float ca[3],
                  const float cb[3], double sums[4][9]) {
  __m128 centreA[3], centreB[3];
  broadcast(ca, centreA);
  broadcast(cb, centreB);
  __m256d h[9];
  for (int k = 0; k < 9; ++k) h[k] = _mm256_setr_pd(sums[0][k], sums[1][k], sums[2][k], sums[3][k]);

  int i = 0;
  for (; i <= n - 4; i += 4) {
    const FourPoints p = centred(load4(a + i), centreA), q = centred(load4(b + i), centreB);
    const __m256d ax = _mm256_cvtps_pd(p.x), ay = _mm256_cvtps_pd(p.y), az = _mm256_cvtps_pd(p.z);
    const __m256d bx = _mm256_cvtps_pd(q.x), by = _mm256_cvtps_pd(q.y), bz = _mm256_cvtps_pd(q.z);
    h[0] = multiplyAdd(h[0], ax, bx);
    h[1] = multiplyAdd(h[1], ax, by);
    h[2] = multiplyAdd(h[2], ax, bz);
    h[3] = multiplyAdd(h[3], ay, bx);
    h[4] = multiplyAdd(h[4], ay, by);
    h[5] = multiplyAdd(h[5], ay, bz);
    h[6] = multiplyAdd(h[6], az, bx);
    h[7] = multiplyAdd(h[7], az, by);
    h[8] = multiplyAdd(h[8], az, bz);
  }

  for (int k = 0; k < 9; ++k) {
    double lanes[4];
    _mm256_storeu_pd(lanes, h[k]);
    for (int lane = 0; lane < 4; ++lane) sums[lane][k] = lanes[lane];
  }
  plainRigidKernels().addProducts4(a + i, b + i, n - i, ca, cb, sums);
}

// The low or high two floats of u, then those of v, in double.
__m256d widenLow(__m128 u, __m128 v) { return _mm256_cvtps_pd(_mm_movelh_ps(u, v)); }
__m256d widenHigh(__m128 u, __m128 v) { return _mm256_cvtps_pd(_mm_movehl_ps(v, u)); }

// A vector's lanes are the two partial sums of one element, then those of another.
void addProducts2(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const float ca[3],
                  const float cb[3], double sums[2][9]) {
  __m128 centreA[3], centreB[3];
  broadcast(ca, centreA);
  broadcast(cb, centreB);
  const auto pair = [&](int k, int l) {
    return _mm256_setr_pd(sums[0][k], sums[1][k], sums[0][l], sums[1][l]);
  };
  __m256d h03 = pair(0, 3), h14 = pair(1, 4), h25 = pair(2, 5), h67 = pair(6, 7), h88 = pair(8, 8);

  int i = 0;
  for (; i <= n - 4; i += 4) {
    const FourPoints p = centred(load4(a + i), centreA), q = centred(load4(b + i), centreB);
    const __m256d axy01 = widenLow(p.x, p.y), axy23 = widenHigh(p.x, p.y);
    const __m256d az01 = widenLow(p.z, p.z), az23 = widenHigh(p.z, p.z);
    h03 = multiplyAdd(multiplyAdd(h03, axy01, widenLow(q.x, q.x)), axy23, widenHigh(q.x, q.x));
    h14 = multiplyAdd(multiplyAdd(h14, axy01, widenLow(q.y, q.y)), axy23, widenHigh(q.y, q.y));
    h25 = multiplyAdd(multiplyAdd(h25, axy01, widenLow(q.z, q.z)), axy23, widenHigh(q.z, q.z));
    h67 = multiplyAdd(multiplyAdd(h67, az01, widenLow(q.x, q.y)), az23, widenHigh(q.x, q.y));
    h88 = multiplyAdd(multiplyAdd(h88, az01, widenLow(q.z, q.z)), az23, widenHigh(q.z, q.z));
  }

  const auto unpack = [&](__m256d h, int k, int l) {
    double lanes[4];
    _mm256_storeu_pd(lanes, h);
    sums[0][k] = lanes[0];
    sums[1][k] = lanes[1];
    sums[0][l] = lanes[2];
    sums[1][l] = lanes[3];
  };
  unpack(h03, 0, 3);
  unpack(h14, 1, 4);
  unpack(h25, 2, 5);
  unpack(h67, 6, 7);
  unpack(h88, 8, 8);
  plainRigidKernels().addProducts2(a + i, b + i, n - i, ca, cb, sums);
}

struct Transform {
  __m256d R[9], t[3];
};

// One coordinate of b - (R a + t), `row` of R and t.
__m256d difference(const Transform& m, int row, __m256d x, __m256d y, __m256d z, __m128 b) {
  const __m256d xy =
      _mm256_add_pd(_mm256_mul_pd(m.R[3 * row], x), _mm256_mul_pd(m.R[3 * row + 1], y));
  const __m256d xyz = _mm256_add_pd(xy, _mm256_mul_pd(m.R[3 * row + 2], z));
  return _mm256_sub_pd(_mm256_cvtps_pd(b), _mm256_add_pd(xyz, m.t[row]));
}

void distances4(const Transform& m, const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b,
                float out[4]) {
  const FourPoints p = load4(a), q = load4(b);
  const __m256d x = _mm256_cvtps_pd(p.x), y = _mm256_cvtps_pd(p.y), z = _mm256_cvtps_pd(p.z);
  const __m256d dx = difference(m, 0, x, y, z, q.x);
  const __m256d dy = difference(m, 1, x, y, z, q.y);
  const __m256d dz = difference(m, 2, x, y, z, q.z);
  const __m256d squares = _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(dx, dx), _mm256_mul_pd(dy, dy)),
                                        _mm256_mul_pd(dz, dz));
  _mm_storeu_ps(out, _mm256_cvtpd_ps(_mm256_sqrt_pd(squares)));
}

// The sum is one long chain of float additions. It runs one group behind the distances, so that the
// processor can work on both; the zeros of the group before the first change no sum of lengths.
float addResiduals(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const double R[9],
                   const double t[3], float sum) {
  Transform m;
  for (int k = 0; k < 9; ++k) m.R[k] = _mm256_set1_pd(R[k]);
  for (int k = 0; k < 3; ++k) m.t[k] = _mm256_set1_pd(t[k]);

  float groups[2][4] = {};
  float *current = groups[0], *next = groups[1];
  int i = 0;
  for (; i <= n - 4; i += 4) {
    distances4(m, a + i, b + i, next);
    for (int k = 0; k < 4; ++k) sum += current[k];
    float* const done = current;
    current = next;
    next = done;
  }
  for (int k = 0; k < 4; ++k) sum += current[k];
  return plainRigidKernels().addResiduals(a + i, b + i, n - i, R, t, sum);
}

} // namespace

const RigidKernels& avx2RigidKernels() {
  static const RigidKernels kernels{addPoints, addProducts4, addProducts2, addResiduals};
  return kernels;
}

} // namespace velmorn
