// The rigid fit's passes for processors with AVX-512: eight points at once.
#include "geometry/point_loads_avx512.h"
#include "geometry/rigid_kernels.h"

namespace velmorn {
namespace {

struct EightVectors {
  __m512d x, y, z;
};

EightVectors loadCentred8(const tagOzKPoint3Df32* points, const __m256 c[3]) {
  const EightPoints p = load8(points);
  return {_mm512_cvtps_pd(_mm256_sub_ps(p.x, c[0])), _mm512_cvtps_pd(_mm256_sub_ps(p.y, c[1])),
          _mm512_cvtps_pd(_mm256_sub_ps(p.z, c[2]))};
}

void broadcast(const float from[3], __m256 to[3]) {
  for (int k = 0; k < 3; ++k) to[k] = _mm256_set1_ps(from[k]);
}

// Products of eight points for two elements, added to [four sums of one | four of the other].
__m512d addTwoElements(__m512d sums, __m512d first, __m512d second) {
  sums = _mm512_add_pd(sums, _mm512_shuffle_f64x2(first, second, 0x44)); // points 0 to 3
  return _mm512_add_pd(sums, _mm512_shuffle_f64x2(first, second, 0xEE)); // points 4 to 7
}

void addProducts4(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const float ca[3],
                  const float cb[3], double sums[4][9]) {
  __m256 centreA[3], centreB[3];
  broadcast(ca, centreA);
  broadcast(cb, centreB);
  const auto pack = [&](int k, int l) {
    return _mm512_setr_pd(sums[0][k], sums[1][k], sums[2][k], sums[3][k], sums[0][l], sums[1][l],
                          sums[2][l], sums[3][l]);
  };
  __m512d h01 = pack(0, 1), h23 = pack(2, 3), h45 = pack(4, 5), h67 = pack(6, 7), h88 = pack(8, 8);

  int i = 0;
  for (; i <= n - 8; i += 8) {
    const EightVectors p = loadCentred8(a + i, centreA), q = loadCentred8(b + i, centreB);
    h01 = addTwoElements(h01, _mm512_mul_pd(p.x, q.x), _mm512_mul_pd(p.x, q.y));
    h23 = addTwoElements(h23, _mm512_mul_pd(p.x, q.z), _mm512_mul_pd(p.y, q.x));
    h45 = addTwoElements(h45, _mm512_mul_pd(p.y, q.y), _mm512_mul_pd(p.y, q.z));
    h67 = addTwoElements(h67, _mm512_mul_pd(p.z, q.x), _mm512_mul_pd(p.z, q.y));
    const __m512d zz = _mm512_mul_pd(p.z, q.z);
    h88 = addTwoElements(h88, zz, zz);
  }

  const auto unpack = [&](__m512d h, int k, int l) {
    double lanes[8];
    _mm512_storeu_pd(lanes, h);
    for (int lane = 0; lane < 4; ++lane) {
      sums[lane][k] = lanes[lane];
      sums[lane][l] = lanes[4 + lane];
    }
  };
  unpack(h01, 0, 1);
  unpack(h23, 2, 3);
  unpack(h45, 4, 5);
  unpack(h67, 6, 7);
  unpack(h88, 8, 8);
  plainRigidKernels().addProducts4(a + i, b + i, n - i, ca, cb, sums);
}

// Products of eight points for four elements, added to [two sums of each].
__m512d addFourElements(__m512d sums, __m512d e0, __m512d e1, __m512d e2, __m512d e3) {
  const __m512d low01 = _mm512_shuffle_f64x2(e0, e1, 0x44);
  const __m512d low23 = _mm512_shuffle_f64x2(e2, e3, 0x44);
  const __m512d high01 = _mm512_shuffle_f64x2(e0, e1, 0xEE);
  const __m512d high23 = _mm512_shuffle_f64x2(e2, e3, 0xEE);
  sums = _mm512_add_pd(sums, _mm512_shuffle_f64x2(low01, low23, 0x88));   // points 0, 1
  sums = _mm512_add_pd(sums, _mm512_shuffle_f64x2(low01, low23, 0xDD));   // points 2, 3
  sums = _mm512_add_pd(sums, _mm512_shuffle_f64x2(high01, high23, 0x88)); // points 4, 5
  return _mm512_add_pd(sums, _mm512_shuffle_f64x2(high01, high23, 0xDD)); // points 6, 7
}

void addProducts2(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const float ca[3],
                  const float cb[3], double sums[2][9]) {
  __m256 centreA[3], centreB[3];
  broadcast(ca, centreA);
  broadcast(cb, centreB);
  const auto pack = [&](int k) {
    return _mm512_setr_pd(sums[0][k], sums[1][k], sums[0][k + 1], sums[1][k + 1], sums[0][k + 2],
                          sums[1][k + 2], sums[0][k + 3], sums[1][k + 3]);
  };
  __m512d h0123 = pack(0), h4567 = pack(4);
  __m128d h8 = _mm_setr_pd(sums[0][8], sums[1][8]);

  int i = 0;
  for (; i <= n - 8; i += 8) {
    const EightVectors p = loadCentred8(a + i, centreA), q = loadCentred8(b + i, centreB);
    h0123 = addFourElements(h0123, _mm512_mul_pd(p.x, q.x), _mm512_mul_pd(p.x, q.y),
                            _mm512_mul_pd(p.x, q.z), _mm512_mul_pd(p.y, q.x));
    h4567 = addFourElements(h4567, _mm512_mul_pd(p.y, q.y), _mm512_mul_pd(p.y, q.z),
                            _mm512_mul_pd(p.z, q.x), _mm512_mul_pd(p.z, q.y));
    const __m512d zz = _mm512_mul_pd(p.z, q.z);
    h8 = _mm_add_pd(h8, _mm512_castpd512_pd128(zz));
    h8 = _mm_add_pd(h8, _mm512_extractf64x2_pd(zz, 1));
    h8 = _mm_add_pd(h8, _mm512_extractf64x2_pd(zz, 2));
    h8 = _mm_add_pd(h8, _mm512_extractf64x2_pd(zz, 3));
  }

  double lanes[18];
  _mm512_storeu_pd(lanes, h0123);
  _mm512_storeu_pd(lanes + 8, h4567);
  _mm_storeu_pd(lanes + 16, h8);
  for (int k = 0; k < 9; ++k) {
    sums[0][k] = lanes[2 * k];
    sums[1][k] = lanes[2 * k + 1];
  }
  plainRigidKernels().addProducts2(a + i, b + i, n - i, ca, cb, sums);
}

struct Transform {
  __m512d R[9], t[3];
};

// One coordinate of b - (R a + t), `row` of R and t.
__m512d difference(const Transform& m, int row, __m512d x, __m512d y, __m512d z, __m256 b) {
  const __m512d xy =
      _mm512_add_pd(_mm512_mul_pd(m.R[3 * row], x), _mm512_mul_pd(m.R[3 * row + 1], y));
  const __m512d xyz = _mm512_add_pd(xy, _mm512_mul_pd(m.R[3 * row + 2], z));
  return _mm512_sub_pd(_mm512_cvtps_pd(b), _mm512_add_pd(xyz, m.t[row]));
}

void distances8(const Transform& m, const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b,
                float out[8]) {
  const EightPoints p = load8(a), q = load8(b);
  const __m512d x = _mm512_cvtps_pd(p.x), y = _mm512_cvtps_pd(p.y), z = _mm512_cvtps_pd(p.z);
  const __m512d dx = difference(m, 0, x, y, z, q.x);
  const __m512d dy = difference(m, 1, x, y, z, q.y);
  const __m512d dz = difference(m, 2, x, y, z, q.z);
  const __m512d squares = _mm512_add_pd(_mm512_add_pd(_mm512_mul_pd(dx, dx), _mm512_mul_pd(dy, dy)),
                                        _mm512_mul_pd(dz, dz));
  _mm256_storeu_ps(out, _mm512_cvtpd_ps(_mm512_sqrt_pd(squares)));
}

// The sum is one long chain of float additions. It runs one group behind the distances, so that the
// processor can work on both; the zeros of the group before the first change no sum of lengths.
float addResiduals(const tagOzKPoint3Df32* a, const tagOzKPoint3Df32* b, int n, const double R[9],
                   const double t[3], float sum) {
  Transform m;
  for (int k = 0; k < 9; ++k) m.R[k] = _mm512_set1_pd(R[k]);
  for (int k = 0; k < 3; ++k) m.t[k] = _mm512_set1_pd(t[k]);

  float groups[2][8] = {};
  float *current = groups[0], *next = groups[1];
  int i = 0;
  for (; i <= n - 8; i += 8) {
    distances8(m, a + i, b + i, next);
    for (int k = 0; k < 8; ++k) sum += current[k];
    float* const done = current;
    current = next;
    next = done;
  }
  for (int k = 0; k < 8; ++k) sum += current[k];
  return plainRigidKernels().addResiduals(a + i, b + i, n - i, R, t, sum);
}

} // namespace

const RigidKernels& avx512RigidKernels() {
  // One chain of additions per coordinate: wider vectors have nothing more to do there.
  static const RigidKernels kernels{avx2RigidKernels().addPoints, addProducts4, addProducts2,
                                    addResiduals};
  return kernels;
}

} // namespace velmorn
