// The fill for processors with AVX-512: sixteen columns at once.
#include <immintrin.h>

#include "depth/background_fill.h"

namespace velmorn {
namespace {

using Row = FillRow<std::uint16_t, std::int32_t>;

// Columns that stand for "no seed on this side": further away than any seed.
constexpr int kNoSeedLeft = -(1 << 20);
constexpr int kNoSeedRight = 1 << 20;
constexpr __mmask16 kAllLanes = 0xFFFF;

// The lanes of the sixteen columns from `first` that the row has.
__mmask16 lanesOf(int width, int first) {
  const int left = width - first;
  return left >= kFillLanes ? kAllLanes : static_cast<__mmask16>((1 << left) - 1);
}

int paddedWidth(int width) { return (width + kFillLanes - 1) / kFillLanes * kFillLanes; }

__m512i columnsFrom(int first) {
  return _mm512_add_epi32(_mm512_set1_epi32(first),
                          _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
}

__m512i loadSteps(const std::uint16_t* steps) {
  return _mm512_cvtepu16_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(steps)));
}

__mmask16 markSeeds(const float* cells, __mmask16 lanes, __m512i emptyMark) {
  return _mm512_mask_cmpneq_epi32_mask(lanes, _mm512_maskz_loadu_epi32(lanes, cells), emptyMark);
}

__mmask16 stepSeeds(const std::uint16_t* steps, __mmask16 lanes) {
  return _mm256_mask_testn_epi16_mask(
      lanes, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(steps)), _mm256_set1_epi16(-1));
}

bool hasSeed(const float* cells, int width, std::uint32_t emptyMark) {
  const __m512i mark = _mm512_set1_epi32(static_cast<int>(emptyMark));
  for (int first = 0; first < width; first += kFillLanes)
    if (markSeeds(cells + first, lanesOf(width, first), mark) != 0) return true;
  return false;
}

// Lane by lane, the first seed at or right of it; kNoSeedRight for none among the sixteen.
__m512i nextSeeds16(__mmask16 seeds, __m512i columns) {
  const __m512i none = _mm512_set1_epi32(kNoSeedRight);
  __m512i next = _mm512_mask_mov_epi32(none, seeds, columns);
  next = _mm512_min_epi32(next, _mm512_alignr_epi32(none, next, 1));
  next = _mm512_min_epi32(next, _mm512_alignr_epi32(none, next, 2));
  next = _mm512_min_epi32(next, _mm512_alignr_epi32(none, next, 4));
  return _mm512_min_epi32(next, _mm512_alignr_epi32(none, next, 8));
}

// Lane by lane, the last seed at or left of it; kNoSeedLeft for none among the sixteen.
__m512i lastSeeds16(__mmask16 seeds, __m512i columns) {
  const __m512i none = _mm512_set1_epi32(kNoSeedLeft);
  __m512i last = _mm512_mask_mov_epi32(none, seeds, columns);
  last = _mm512_max_epi32(last, _mm512_alignr_epi32(last, none, 15));
  last = _mm512_max_epi32(last, _mm512_alignr_epi32(last, none, 14));
  last = _mm512_max_epi32(last, _mm512_alignr_epi32(last, none, 12));
  return _mm512_max_epi32(last, _mm512_alignr_epi32(last, none, 8));
}

// nextSeed[column] becomes the first seed at or right of the column, for the padded width and one
// more column.
template <typename SeedsAt>
void findNextSeeds(int width, SeedsAt seedsAt, int* nextSeed) {
  __m512i beyond = _mm512_set1_epi32(kNoSeedRight);
  const int padded = paddedWidth(width);
  nextSeed[padded] = kNoSeedRight;
  for (int first = padded - kFillLanes; first >= 0; first -= kFillLanes) {
    const __mmask16 seeds = seedsAt(first, lanesOf(width, first));
    const __m512i next = _mm512_min_epi32(nextSeeds16(seeds, columnsFrom(first)), beyond);
    _mm512_storeu_si512(nextSeed + first, next);
    beyond = _mm512_broadcastd_epi32(_mm512_castsi512_si128(next));
  }
}

// The last seed left of the sixteen columns, in every lane.
struct LeftSeed {
  __m512i column = _mm512_set1_epi32(kNoSeedLeft);
  __m512 value = _mm512_setzero_ps();
};

// The nearest seed of a column's own row, the right one of two.
struct Nearest {
  __m512i left, right; // steps
  __m512 value;
};

LeftSeed lastLane(__m512i columns, __m512 values) {
  const __m512i last = _mm512_set1_epi32(15);
  return {_mm512_permutexvar_epi32(last, columns), _mm512_permutexvar_ps(last, values)};
}

Nearest nearest16(const Row& row, int first, __mmask16 seeds, __m512 cells, LeftSeed& leftSeed) {
  const __m512i columns = columnsFrom(first);
  const __m512i next = _mm512_loadu_si512(row.nextSeed + first);
  const int beyond = row.nextSeed[first + kFillLanes];
  __m512 rightValue = _mm512_set1_ps(row.cells[beyond < row.width ? beyond : 0]);
  __m512 leftValue = leftSeed.value;
  __m512i last = leftSeed.column;
  if (seeds != 0) {
    // A seed's lane is the lowest four bits of its column.
    const __mmask16 nextIsHere =
        _mm512_cmplt_epi32_mask(next, _mm512_set1_epi32(first + kFillLanes));
    rightValue = _mm512_mask_permutexvar_ps(rightValue, nextIsHere, next, cells);
    const __m512i lastHere = lastSeeds16(seeds, columns);
    const __mmask16 lastIsHere = _mm512_cmpge_epi32_mask(lastHere, _mm512_set1_epi32(first));
    leftValue = _mm512_mask_permutexvar_ps(leftValue, lastIsHere, lastHere, cells);
    last = _mm512_max_epi32(last, lastHere);
    leftSeed = lastLane(last, leftValue);
  }
  const __m512i left = _mm512_sub_epi32(columns, last), right = _mm512_sub_epi32(next, columns);
  const __mmask16 takesRight = _mm512_cmple_epi32_mask(right, left);
  return {left, right, _mm512_mask_blend_ps(takesRight, leftValue, rightValue)};
}

void fillFromBelow(const Row& row, std::uint32_t emptyMark) {
  const __m512i mark = _mm512_set1_epi32(static_cast<int>(emptyMark));
  const __m512i gap = _mm512_set1_epi32(row.belowGap);
  const auto seedsAt = [&](int first, __mmask16 lanes) {
    return markSeeds(row.cells + first, lanes, mark);
  };
  findNextSeeds(row.width, seedsAt, row.nextSeed);
  LeftSeed leftSeed;
  for (int first = 0; first < row.width; first += kFillLanes) {
    const __mmask16 lanes = lanesOf(row.width, first), seeds = seedsAt(first, lanes);
    const __m512 cells = _mm512_maskz_loadu_ps(lanes, row.cells + first);
    __m256i* const stepsOut = reinterpret_cast<__m256i*>(row.steps + first);
    if (seeds == kAllLanes) {
      _mm256_storeu_si256(stepsOut, _mm256_setzero_si256());
      leftSeed = lastLane(columnsFrom(first), cells);
      continue;
    }
    const Nearest own = nearest16(row, first, seeds, cells, leftSeed);
    const __m512i ownSteps = _mm512_min_epi32(own.left, own.right);
    const __m512i below = _mm512_add_epi32(loadSteps(row.belowSteps + first), gap);
    const __mmask16 takesBelow = _mm512_mask_cmple_epi32_mask(lanes, below, ownSteps);
    _mm256_storeu_si256(stepsOut, _mm512_cvtepi32_epi16(_mm512_min_epi32(below, ownSteps)));
    const __m512 values = _mm512_mask_loadu_ps(own.value, takesBelow, row.belowCells + first);
    _mm512_mask_storeu_ps(row.cells + first, lanes, values);
  }
}

void writeCells(const Row& row, int first, __mmask16 lanes, __m512i aboveKeys, __m512 aboveValues) {
  const __m512i below =
      _mm512_add_epi32(loadSteps(row.belowSteps + first), _mm512_set1_epi32(row.belowGap));
  const __mmask16 takesBelow =
      _mm512_mask_cmple_epi32_mask(lanes, _mm512_slli_epi32(below, 1), aboveKeys);
  const __m512 values = _mm512_mask_loadu_ps(aboveValues, takesBelow, row.belowCells + first);
  _mm512_mask_storeu_ps(row.cells + first, lanes, values);
}

void fillFromAll(const Row& row) {
  const __m512i gap = _mm512_set1_epi32(2 * row.aboveGap), one = _mm512_set1_epi32(1);
  const auto seedsAt = [&](int first, __mmask16 lanes) {
    return stepSeeds(row.steps + first, lanes);
  };
  findNextSeeds(row.width, seedsAt, row.nextSeed);
  LeftSeed leftSeed;
  for (int first = 0; first < row.width; first += kFillLanes) {
    const __mmask16 lanes = lanesOf(row.width, first), seeds = seedsAt(first, lanes);
    const __m512 cells = _mm512_maskz_loadu_ps(lanes, row.cells + first);
    if (seeds == kAllLanes) {
      _mm512_storeu_si512(row.aboveKeys + first, one);
      _mm512_storeu_ps(row.aboveValues + first, cells);
      leftSeed = lastLane(columnsFrom(first), cells);
      continue;
    }
    const Nearest own = nearest16(row, first, seeds, cells, leftSeed);
    // A seed itself counts as not to the right.
    const __m512i leftKeys = _mm512_add_epi32(_mm512_slli_epi32(own.left, 1), one);
    const __m512i rightKeys = _mm512_slli_epi32(own.right, 1);
    const __m512i ownKeys = _mm512_max_epi32(_mm512_min_epi32(leftKeys, rightKeys), one);
    const __m512i above = _mm512_add_epi32(_mm512_loadu_si512(row.aboveKeys + first), gap);
    const __mmask16 takesOwn = _mm512_cmple_epi32_mask(ownKeys, above);
    const __m512i keys = _mm512_min_epi32(ownKeys, above);
    const __m512 values =
        _mm512_mask_blend_ps(takesOwn, _mm512_loadu_ps(row.aboveValues + first), own.value);
    _mm512_storeu_si512(row.aboveKeys + first, keys);
    _mm512_storeu_ps(row.aboveValues + first, values);
    writeCells(row, first, lanes, keys, values);
  }
}

void fillBetween(const Row& row) {
  const __m512i gap = _mm512_set1_epi32(2 * row.aboveGap);
  for (int first = 0; first < row.width; first += kFillLanes)
    writeCells(row, first, lanesOf(row.width, first),
               _mm512_add_epi32(_mm512_loadu_si512(row.aboveKeys + first), gap),
               _mm512_loadu_ps(row.aboveValues + first));
}

} // namespace

const ShortFillKernels& avx512FillKernels() {
  static const ShortFillKernels kernels{hasSeed, fillFromBelow, fillFromAll, fillBetween};
  return kernels;
}

} // namespace velmorn
