// The fill for processors with AVX2: eight columns at once.
#include <immintrin.h>

#include "depth/background_fill.h"

namespace velmorn {
namespace {

using Row = FillRow<std::uint16_t, std::int32_t>;

constexpr int kLanes = 8;
constexpr int kAllSeeds = 0xFF;

// Columns that stand for "no seed on this side": further away than any seed.
constexpr int kNoSeedLeft = -(1 << 20);
constexpr int kNoSeedRight = 1 << 20;

__m256i columnsFrom(int first) {
  return _mm256_add_epi32(_mm256_set1_epi32(first), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}

// All bits of the lanes that the row has.
__m256i lanesOf(int width, int first) {
  return _mm256_cmpgt_epi32(_mm256_set1_epi32(width), columnsFrom(first));
}

bool isWhole(int width, int first) { return width - first >= kLanes; }

// Cells are not padded: a row's last vector may be cut off.
__m256 loadCells(const float* cells, int width, int first) {
  return isWhole(width, first) ? _mm256_loadu_ps(cells + first)
                               : _mm256_maskload_ps(cells + first, lanesOf(width, first));
}

void storeCells(float* cells, int width, int first, __m256 values) {
  if (isWhole(width, first))
    _mm256_storeu_ps(cells + first, values);
  else
    _mm256_maskstore_ps(cells + first, lanesOf(width, first), values);
}

__m128i loadNarrowSteps(const std::uint16_t* steps) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(steps));
}

// No number of steps that is stored reaches 2^16.
void storeSteps(std::uint16_t* steps, __m256i wide) {
  const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi32(wide, wide), 0x08);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(steps), _mm256_castsi256_si128(packed));
}

__m256i loadInts(const int* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

void storeInts(int* to, __m256i values) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), values);
}

__m256 select(__m256i mask, __m256 yes, __m256 no) {
  return _mm256_blendv_ps(no, yes, _mm256_castsi256_ps(mask));
}

// All bits of the lanes where a <= b.
__m256i lessOrEqual(__m256i a, __m256i b) { return _mm256_cmpeq_epi32(_mm256_min_epi32(a, b), a); }

__m256i markSeeds(const Row& row, int first, __m256i emptyMark) {
  const __m256i cells = _mm256_castps_si256(loadCells(row.cells, row.width, first));
  return _mm256_andnot_si256(_mm256_cmpeq_epi32(cells, emptyMark), lanesOf(row.width, first));
}

__m256i stepSeeds(const Row& row, int first) {
  const __m256i steps = _mm256_cvtepu16_epi32(loadNarrowSteps(row.steps + first));
  return _mm256_and_si256(_mm256_cmpeq_epi32(steps, _mm256_setzero_si256()),
                          lanesOf(row.width, first));
}

int bitsOf(__m256i lanes) { return _mm256_movemask_ps(_mm256_castsi256_ps(lanes)); }

bool hasSeed(const float* cells, int width, std::uint32_t emptyMark) {
  const __m256i mark = _mm256_set1_epi32(static_cast<int>(emptyMark));
  Row row{};
  row.width = width;
  row.cells = const_cast<float*>(cells);
  for (int first = 0; first < width; first += kLanes)
    if (bitsOf(markSeeds(row, first, mark)) != 0) return true;
  return false;
}

// Lane i takes lane i + by; beyond the last lane `none`.
template <int by>
__m256i fromRight(__m256i values, __m256i none) {
  const __m256i index =
      _mm256_setr_epi32(by, by + 1, by + 2, by + 3, by + 4, by + 5, by + 6, by + 7);
  constexpr int kBeyond = 0xFF & (0xFF << (kLanes - by));
  return _mm256_blend_epi32(_mm256_permutevar8x32_epi32(values, index), none, kBeyond);
}

template <int by>
__m256i fromLeft(__m256i values, __m256i none) {
  const __m256i index =
      _mm256_setr_epi32(-by, 1 - by, 2 - by, 3 - by, 4 - by, 5 - by, 6 - by, 7 - by);
  constexpr int kBeyond = 0xFF >> (kLanes - by);
  return _mm256_blend_epi32(_mm256_permutevar8x32_epi32(values, index), none, kBeyond);
}

// Lane by lane, the first seed at or right of it; kNoSeedRight for none among the eight.
__m256i nextSeeds8(__m256i seeds, __m256i columns) {
  const __m256i none = _mm256_set1_epi32(kNoSeedRight);
  __m256i next = _mm256_blendv_epi8(none, columns, seeds);
  next = _mm256_min_epi32(next, fromRight<1>(next, none));
  next = _mm256_min_epi32(next, fromRight<2>(next, none));
  return _mm256_min_epi32(next, fromRight<4>(next, none));
}

// Lane by lane, the last seed at or left of it; kNoSeedLeft for none among the eight.
__m256i lastSeeds8(__m256i seeds, __m256i columns) {
  const __m256i none = _mm256_set1_epi32(kNoSeedLeft);
  __m256i last = _mm256_blendv_epi8(none, columns, seeds);
  last = _mm256_max_epi32(last, fromLeft<1>(last, none));
  last = _mm256_max_epi32(last, fromLeft<2>(last, none));
  return _mm256_max_epi32(last, fromLeft<4>(last, none));
}

// nextSeed[column] becomes the first seed at or right of the column, for the row's last vector to
// its end and one more column.
template <typename SeedsAt>
void findNextSeeds(const Row& row, SeedsAt seedsAt) {
  __m256i beyond = _mm256_set1_epi32(kNoSeedRight);
  const int padded = (row.width + kLanes - 1) / kLanes * kLanes;
  row.nextSeed[padded] = kNoSeedRight;
  for (int first = padded - kLanes; first >= 0; first -= kLanes) {
    const __m256i next = _mm256_min_epi32(nextSeeds8(seedsAt(first), columnsFrom(first)), beyond);
    storeInts(row.nextSeed + first, next);
    beyond = _mm256_broadcastd_epi32(_mm256_castsi256_si128(next));
  }
}

// The last seed left of the eight columns, in every lane.
struct LeftSeed {
  __m256i column = _mm256_set1_epi32(kNoSeedLeft);
  __m256 value = _mm256_setzero_ps();
};

// The nearest seed of a column's own row, the right one of two.
struct Nearest {
  __m256i left, right; // steps
  __m256 value;
};

LeftSeed lastLane(__m256i columns, __m256 values) {
  const __m256i last = _mm256_set1_epi32(kLanes - 1);
  return {_mm256_permutevar8x32_epi32(columns, last), _mm256_permutevar8x32_ps(values, last)};
}

Nearest nearest8(const Row& row, int first, __m256i seeds, __m256 cells, LeftSeed& leftSeed) {
  const __m256i columns = columnsFrom(first);
  const __m256i next = loadInts(row.nextSeed + first);
  const int beyond = row.nextSeed[first + kLanes];
  __m256 rightValue = _mm256_set1_ps(row.cells[beyond < row.width ? beyond : 0]);
  __m256 leftValue = leftSeed.value;
  __m256i last = leftSeed.column;
  if (bitsOf(seeds) != 0) {
    // A seed's lane is the lowest three bits of its column.
    const __m256i nextIsHere = _mm256_cmpgt_epi32(_mm256_set1_epi32(first + kLanes), next);
    rightValue = select(nextIsHere, _mm256_permutevar8x32_ps(cells, next), rightValue);
    const __m256i lastHere = lastSeeds8(seeds, columns);
    const __m256i lastIsHere = _mm256_cmpgt_epi32(lastHere, _mm256_set1_epi32(first - 1));
    leftValue = select(lastIsHere, _mm256_permutevar8x32_ps(cells, lastHere), leftValue);
    last = _mm256_max_epi32(last, lastHere);
    leftSeed = lastLane(last, leftValue);
  }
  const __m256i left = _mm256_sub_epi32(columns, last), right = _mm256_sub_epi32(next, columns);
  return {left, right, select(lessOrEqual(right, left), rightValue, leftValue)};
}

__m256i stepsBelow(const Row& row, int first) {
  return _mm256_add_epi32(_mm256_cvtepu16_epi32(loadNarrowSteps(row.belowSteps + first)),
                          _mm256_set1_epi32(row.belowGap));
}

void fillFromBelow(const Row& row, std::uint32_t emptyMark) {
  const __m256i mark = _mm256_set1_epi32(static_cast<int>(emptyMark));
  const auto seedsAt = [&](int first) { return markSeeds(row, first, mark); };
  findNextSeeds(row, seedsAt);
  LeftSeed leftSeed;
  for (int first = 0; first < row.width; first += kLanes) {
    const __m256i seeds = seedsAt(first);
    const __m256 cells = loadCells(row.cells, row.width, first);
    if (bitsOf(seeds) == kAllSeeds) {
      storeSteps(row.steps + first, _mm256_setzero_si256());
      leftSeed = lastLane(columnsFrom(first), cells);
      continue;
    }
    const Nearest own = nearest8(row, first, seeds, cells, leftSeed);
    const __m256i ownSteps = _mm256_min_epi32(own.left, own.right);
    const __m256i below = stepsBelow(row, first);
    const __m256 belowCells = loadCells(row.belowCells, row.width, first);
    storeSteps(row.steps + first, _mm256_min_epi32(below, ownSteps));
    storeCells(row.cells, row.width, first,
               select(lessOrEqual(below, ownSteps), belowCells, own.value));
  }
}

void writeCells(const Row& row, int first, __m256i aboveKeys, __m256 aboveValues) {
  const __m256i takesBelow = lessOrEqual(_mm256_slli_epi32(stepsBelow(row, first), 1), aboveKeys);
  const __m256 belowCells = loadCells(row.belowCells, row.width, first);
  storeCells(row.cells, row.width, first, select(takesBelow, belowCells, aboveValues));
}

void fillFromAll(const Row& row) {
  const __m256i gap = _mm256_set1_epi32(2 * row.aboveGap), one = _mm256_set1_epi32(1);
  const auto seedsAt = [&](int first) { return stepSeeds(row, first); };
  findNextSeeds(row, seedsAt);
  LeftSeed leftSeed;
  for (int first = 0; first < row.width; first += kLanes) {
    const __m256i seeds = seedsAt(first);
    const __m256 cells = loadCells(row.cells, row.width, first);
    if (bitsOf(seeds) == kAllSeeds) {
      storeInts(row.aboveKeys + first, one);
      _mm256_storeu_ps(row.aboveValues + first, cells);
      leftSeed = lastLane(columnsFrom(first), cells);
      continue;
    }
    const Nearest own = nearest8(row, first, seeds, cells, leftSeed);
    // A seed itself counts as not to the right.
    const __m256i leftKeys = _mm256_add_epi32(_mm256_slli_epi32(own.left, 1), one);
    const __m256i rightKeys = _mm256_slli_epi32(own.right, 1);
    const __m256i ownKeys = _mm256_max_epi32(_mm256_min_epi32(leftKeys, rightKeys), one);
    const __m256i above = _mm256_add_epi32(loadInts(row.aboveKeys + first), gap);
    const __m256i keys = _mm256_min_epi32(ownKeys, above);
    const __m256 values =
        select(lessOrEqual(ownKeys, above), own.value, _mm256_loadu_ps(row.aboveValues + first));
    storeInts(row.aboveKeys + first, keys);
    _mm256_storeu_ps(row.aboveValues + first, values);
    writeCells(row, first, keys, values);
  }
}

void fillBetween(const Row& row) {
  const __m256i gap = _mm256_set1_epi32(2 * row.aboveGap);
  for (int first = 0; first < row.width; first += kLanes)
    writeCells(row, first, _mm256_add_epi32(loadInts(row.aboveKeys + first), gap),
               _mm256_loadu_ps(row.aboveValues + first));
}

} // namespace

const ShortFillKernels& avx2FillKernels() {
  static const ShortFillKernels kernels{hasSeed, fillFromBelow, fillFromAll, fillBetween};
  return kernels;
}

} // namespace velmorn
