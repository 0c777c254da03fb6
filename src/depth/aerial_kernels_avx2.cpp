// The aerial view's searches for processors with AVX2: eight samples or cells at once.
#include <immintrin.h>

#include "depth/aerial_kernels.h"
#include "depth/depth_false_color.h"

namespace velmorn {
namespace {

struct Points {
  __m256 x, y;
};

// One row of firstFromCam times the points (x, y, d).
__m256 rowTimes(float rx, float ry, float rz, float t, const Points& p, __m256 d) {
  const __m256 xy =
      _mm256_add_ps(_mm256_mul_ps(_mm256_set1_ps(rx), p.x), _mm256_mul_ps(_mm256_set1_ps(ry), p.y));
  return _mm256_add_ps(_mm256_add_ps(xy, _mm256_mul_ps(_mm256_set1_ps(rz), d)), _mm256_set1_ps(t));
}

// All ones for a coordinate inside; zero for NaN.
__m256 within(float from, __m256 value, float to) {
  return _mm256_and_ps(_mm256_cmp_ps(_mm256_set1_ps(from), value, _CMP_LT_OQ),
                       _mm256_cmp_ps(value, _mm256_set1_ps(to), _CMP_LT_OQ));
}

__m256i cellsAlong(__m256 value, float from, float resolution) {
  return _mm256_cvttps_epi32(
      _mm256_div_ps(_mm256_sub_ps(value, _mm256_set1_ps(from)), _mm256_set1_ps(resolution)));
}

// For every mask of eight lanes the chosen lanes' numbers, in order from the lowest byte up.
struct LaneTable {
  std::uint64_t lanesOf[256];

  LaneTable() {
    for (unsigned mask = 0; mask < 256; ++mask) {
      lanesOf[mask] = 0;
      unsigned shift = 0;
      for (std::uint64_t lane = 0; lane < 8; ++lane)
        if ((mask >> lane & 1) != 0) {
          lanesOf[mask] |= lane << shift;
          shift += 8;
        }
    }
  }
};

const LaneTable& laneTable() {
  static const LaneTable table;
  return table;
}

// Moves the chosen lanes to the front.
__m256i compress(__m256i v, std::uint64_t lanes) {
  const __m128i bytes = _mm_cvtsi64_si128(static_cast<long long>(lanes));
  return _mm256_permutevar8x32_epi32(v, _mm256_cvtepu8_epi32(bytes));
}

void store(void* to, __m256i v) { _mm256_storeu_si256(static_cast<__m256i*>(to), v); }
void store(void* to, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(to), v); }

__m256i load4(const SampleKey* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

__m256i load8(const std::uint16_t* from) {
  return _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
}

// The depths with the offsets first, first + 1, ... as list elements.
__m256i listed8(__m256i depth, int first) {
  const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  return _mm256_or_si256(_mm256_slli_epi32(depth, 16),
                         _mm256_add_epi32(lanes, _mm256_set1_epi32(first)));
}

// Eight samples of a stretch, those from `first` on.
struct Eight {
  int first, kept; // the lanes that are listed, as bits
  __m256i depth, cell;
};

// Hands on whole eights, returns the number of samples in them.
template <typename Append>
int listEights(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
               Append& append) {
  const tagOzKRect2Df32& region = grid.region;
  const __m256 rowFactor = _mm256_set1_ps(stretch.rowFactor);
  const __m256i width = _mm256_set1_epi32(grid.width);
  const __m256i zero = _mm256_setzero_si256();

  int i = 0;
  for (; i <= stretch.n - 8; i += 8) {
    const __m256i depth = load8(stretch.depth + i);
    const __m256 d = _mm256_cvtepi32_ps(depth);
    Points p{_mm256_mul_ps(_mm256_loadu_ps(stretch.columnFactors + i), d),
             _mm256_mul_ps(rowFactor, d)};
    if (!camera.isFirst)
      p = {rowTimes(camera.r00, camera.r01, camera.r02, camera.t0, p, d),
           rowTimes(camera.r10, camera.r11, camera.r12, camera.t1, p, d)};
    const __m256 inside =
        _mm256_and_ps(within(region.x1, p.x, region.x2), within(region.y1, p.y, region.y2));
    const __m256 hasDepth = _mm256_castsi256_ps(_mm256_cmpgt_epi32(depth, zero));
    const int kept = _mm256_movemask_ps(_mm256_and_ps(inside, hasDepth));
    const __m256i cell =
        _mm256_add_epi32(_mm256_mullo_epi32(cellsAlong(p.y, region.y1, grid.resolution), width),
                         cellsAlong(p.x, region.x1, grid.resolution));
    append({i, kept, depth, cell});
  }
  return i;
}

struct AppendSamples {
  Listed* samples;
  std::int32_t* cells;
  const LaneTable& table;
  int length = 0;

  void operator()(const Eight& s) {
    const std::uint64_t lanes = table.lanesOf[s.kept];
    store(samples + length, compress(listed8(s.depth, s.first), lanes));
    store(cells + length, compress(s.cell, lanes));
    length += __builtin_popcount(static_cast<unsigned>(s.kept));
  }
};

struct AppendKeys {
  NumberedPixels pixels;
  SampleKey* keys;
  std::int32_t* cells;
  const LaneTable& table;
  int length = 0;

  // A pixel's three bytes in every lane. The upper half is loaded from four bytes before its own,
  // so that nothing beyond the eight pixels is read.
  __m256i colors(int first) const {
    const unsigned char* bytes = pixels.bytes + 3 * first;
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)),
                  high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 8));
    return _mm256_shuffle_epi8(
        _mm256_set_m128i(high, low),
        _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, //
                         4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1));
  }

  void operator()(const Eight& s) {
    const std::uint64_t lanes = table.lanesOf[s.kept];
    const __m256i number =
        _mm256_add_epi32(_mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7),
                         _mm256_set1_epi32(static_cast<int>(pixels.first) + s.first));
    const __m256i upper = compress(
        _mm256_or_si256(_mm256_slli_epi32(s.depth, 16), _mm256_srli_epi32(number, 8)), lanes);
    const __m256i lower =
        compress(_mm256_or_si256(_mm256_slli_epi32(number, 24), colors(s.first)), lanes);
    // Keys 0 1 4 5 and 2 3 6 7.
    const __m256i even = _mm256_unpacklo_epi32(lower, upper),
                  odd = _mm256_unpackhi_epi32(lower, upper);
    store(keys + length, _mm256_permute2x128_si256(even, odd, 0x20));
    store(keys + length + 4, _mm256_permute2x128_si256(even, odd, 0x31));
    store(cells + length, compress(s.cell, lanes));
    length += __builtin_popcount(static_cast<unsigned>(s.kept));
  }
};

DepthStretch restOf(const DepthStretch& stretch, int done) {
  return {stretch.depth + done, stretch.columnFactors + done, stretch.n - done, stretch.rowFactor};
}

int listSamples(const DepthStretch& stretch, const CameraFactors& camera, const AerialGrid& grid,
                Listed* samples, std::int32_t* cells) {
  AppendSamples append{samples, cells, laneTable()};
  const int done = listEights(stretch, camera, grid, append);
  Listed* const rest = samples + append.length;
  const int length = plainAerialKernels().listSamples(restOf(stretch, done), camera, grid, rest,
                                                      cells + append.length);
  for (int k = 0; k < length; ++k) rest[k] += static_cast<Listed>(done);
  return append.length + length;
}

int listKeys(const DepthStretch& stretch, const NumberedPixels& pixels, const CameraFactors& camera,
             const AerialGrid& grid, SampleKey* keys, std::int32_t* cells) {
  AppendKeys append{pixels, keys, cells, laneTable()};
  const int done = listEights(stretch, camera, grid, append);
  const NumberedPixels rest{pixels.bytes + 3 * done,
                            pixels.first + static_cast<std::uint32_t>(done)};
  return append.length + plainAerialKernels().listKeys(restOf(stretch, done), rest, camera, grid,
                                                       keys + append.length, cells + append.length);
}

// Eight keys at a time, 24 bytes; both stores reach over what follows, which is written later.
void showKeys(const SampleKey* keys, std::size_t n, unsigned char* image) {
  const __m256i bytes = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
  std::size_t i = 0;
  for (; i + 10 <= n; i += 8) {
    const __m256 low = _mm256_castsi256_ps(load4(keys + i)),
                 high = _mm256_castsi256_ps(load4(keys + i + 4));
    // Keys 0 1 4 5 and 2 3 6 7, put in order.
    const __m256i colors = _mm256_permute4x64_epi64(
        _mm256_castps_si256(_mm256_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0))),
        _MM_SHUFFLE(3, 1, 2, 0));
    const __m256i packed = _mm256_shuffle_epi8(colors, bytes);
    store(image + 3 * i, _mm256_castsi256_si128(packed));
    store(image + 3 * i + 12, _mm256_extracti128_si256(packed, 1));
  }
  plainAerialKernels().showKeys(keys + i, n - i, image + 3 * i);
}

// The last vector starts where it ends with the last cell.
CellRange findRange(const std::int32_t* cells, int n) {
  if (n < 8) return plainAerialKernels().findRange(cells, n);
  __m256i first = _mm256_set1_epi32(cells[0]), last = first;
  const auto take = [&](int i) {
    const __m256i cell = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(cells + i));
    first = _mm256_min_epi32(first, cell);
    last = _mm256_max_epi32(last, cell);
  };
  for (int i = 0; i <= n - 8; i += 8) take(i);
  take(n - 8);
  std::int32_t firsts[8], lasts[8];
  store(firsts, first);
  store(lasts, last);
  const std::int32_t least = plainAerialKernels().findRange(firsts, 8).first;
  return {least, plainAerialKernels().findRange(lasts, 8).last};
}

std::uint16_t bitsOf(__m256i depths) {
  std::uint32_t lanes[8], bits = 0;
  store(lanes, depths);
  for (const std::uint32_t lane : lanes) bits |= lane;
  return static_cast<std::uint16_t>(bits);
}

CoveredCells listCovered(const std::uint16_t* depth, int n, Listed* covered) {
  const LaneTable& table = laneTable();
  const __m256i empty = _mm256_set1_epi32(kEmptyCell);
  __m256i bits = _mm256_setzero_si256();
  int length = 0;
  int i = 0;
  for (; i <= n - 8; i += 8) {
    const __m256i cell = load8(depth + i);
    const __m256i isEmpty = _mm256_cmpeq_epi32(cell, empty);
    bits = _mm256_or_si256(bits, _mm256_andnot_si256(isEmpty, cell));
    const int mask = _mm256_movemask_ps(_mm256_castsi256_ps(isEmpty)) ^ 0xFF;
    store(covered + length, compress(listed8(cell, i), table.lanesOf[mask]));
    length += __builtin_popcount(static_cast<unsigned>(mask));
  }
  const CoveredCells rest = plainAerialKernels().listCovered(depth + i, n - i, covered + length);
  for (int k = 0; k < rest.n; ++k) covered[length + k] += static_cast<Listed>(i);
  return {length + rest.n, static_cast<std::uint16_t>(bitsOf(bits) | rest.depthBits)};
}

} // namespace

const AerialKernels& avx2AerialKernels() {
  static const AerialKernels kernels{listSamples, listKeys, showKeys, findRange, listCovered};
  return kernels;
}

} // namespace velmorn
