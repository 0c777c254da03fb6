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

// Sixteen columns after the other. Known to be whole but for the last ones, they need no masks.
template <typename Step>
void forEachSixteen(int width, Step step) {
  int first = 0;
  for (; first <= width - kFillLanes; first += kFillLanes) step(first, kAllLanes);
  if (first < width) step(first, lanesOf(width, first));
}

// Rows are often a page apart, which the processor's own prefetching does not cross.
void fetchUpcoming(const Row& row, int first) {
  _mm_prefetch(reinterpret_cast<const char*>(row.upcoming + first), _MM_HINT_T0);
}

__m512i laneNumbers() {
  return _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
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
  int first = 0;
  for (; first <= width - kFillLanes; first += kFillLanes)
    if (markSeeds(cells + first, kAllLanes, mark) != 0) return true;
  return first < width && markSeeds(cells + first, lanesOf(width, first), mark) != 0;
}

// The number of the highest bit is the exponent of the mask as a float. Seeds are shifted up by one
// bit, so that an exponent's lowest four bits, with its bias of 127, are the seed's lane.
constexpr int kBias = 128;

__m512i highestBits(__m512i shiftedSeeds) {
  return _mm512_srli_epi32(_mm512_castps_si512(_mm512_cvtepi32_ps(shiftedSeeds)), 23);
}

// The seeds of a row, gone through once: those of the sixteen columns that are worked on, and the
// first one beyond, which is looked for when it is asked for and remembered as long as it is ahead.
template <typename SeedsAt>
class RowSeeds {
 public:
  RowSeeds(int width, const SeedsAt& seedsAt)
      : width_(width), seedsAt_(seedsAt), next_(seedsAt(0, lanesOf(width, 0))) {}

  // The columns from `first`, which is 0 and then the last one's plus 16.
  __mmask16 advanceTo(int first) {
    start_ = first + kFillLanes;
    const __mmask16 seeds = next_;
    if (start_ <= width_ - kFillLanes)
      next_ = seedsAt_(start_, kAllLanes); // no mask to be made
    else
      next_ = start_ < width_ ? seedsAt_(start_, lanesOf(width_, start_)) : 0;
    return seeds;
  }

  int beyond() { return next_ != 0 ? start_ + __builtin_ctz(next_) : farBeyond(); }

 private:
  int farBeyond() {
    if (column_ >= start_) return column_;
    for (int next = start_ + kFillLanes; next < width_; next += kFillLanes) {
      const __mmask16 seeds = seedsAt_(next, lanesOf(width_, next));
      if (seeds != 0) return column_ = next + __builtin_ctz(seeds);
    }
    return column_ = kNoSeedRight;
  }

  int width_;
  const SeedsAt& seedsAt_;
  int start_ = 0, column_ = -1;
  __mmask16 next_;
};

// The last seed left of the sixteen columns, the value in every lane.
struct LeftSeed {
  int column = kNoSeedLeft;
  __m512 value = _mm512_setzero_ps();
};

LeftSeed lastLane(int first, __m512 cells) {
  return {first + kFillLanes - 1, _mm512_permutexvar_ps(_mm512_set1_epi32(15), cells)};
}

// The nearest seed of a column's own row, the right one of two.
struct Nearest {
  __m512i left, right; // steps
  __m512 value;
};

Nearest nearest16(const Row& row, int first, int beyond, __mmask16 seeds, __m512 cells,
                  LeftSeed& leftSeed) {
  const __m512i lanes = laneNumbers(), biased = _mm512_add_epi32(lanes, _mm512_set1_epi32(kBias));
  __m512 rightValue = _mm512_set1_ps(row.cells[beyond < row.width ? beyond : 0]);
  __m512 leftValue = leftSeed.value;
  __m512i left = _mm512_add_epi32(lanes, _mm512_set1_epi32(first - leftSeed.column));
  __m512i right = _mm512_sub_epi32(_mm512_set1_epi32(beyond - first), lanes);
  if (seeds != 0) {
    const __m512i all = _mm512_set1_epi32(2 * seeds);
    const __m512i fromHere = _mm512_sllv_epi32(_mm512_set1_epi32(-2), lanes);

    const __m512i rightSeeds = _mm512_and_si512(all, fromHere);
    const __mmask16 hasRight = _mm512_test_epi32_mask(rightSeeds, rightSeeds);
    const __m512i lowest =
        _mm512_and_si512(rightSeeds, _mm512_sub_epi32(_mm512_setzero_si512(), rightSeeds));
    const __m512i next = highestBits(lowest);
    right = _mm512_mask_sub_epi32(right, hasRight, next, biased);
    rightValue = _mm512_mask_permutexvar_ps(rightValue, hasRight, next, cells);

    const __m512i leftSeeds = _mm512_andnot_si512(_mm512_add_epi32(fromHere, fromHere), all);
    const __mmask16 hasLeft = _mm512_test_epi32_mask(leftSeeds, leftSeeds);
    const __m512i last = highestBits(leftSeeds);
    left = _mm512_mask_sub_epi32(left, hasLeft, biased, last);
    leftValue = _mm512_mask_permutexvar_ps(leftValue, hasLeft, last, cells);

    const int lastHere = 31 - __builtin_clz(seeds);
    leftSeed = {first + lastHere, _mm512_permutexvar_ps(_mm512_set1_epi32(lastHere), cells)};
  }
  const __mmask16 takesRight = _mm512_cmple_epi32_mask(right, left);
  return {left, right, _mm512_mask_blend_ps(takesRight, leftValue, rightValue)};
}

void fillFromBelow(Row row, std::uint32_t emptyMark) {
  const __m512i mark = _mm512_set1_epi32(static_cast<int>(emptyMark));
  const __m512i gap = _mm512_set1_epi32(row.belowGap);
  const auto seedsAt = [&](int first, __mmask16 lanes) {
    return markSeeds(row.cells + first, lanes, mark);
  };
  RowSeeds rowSeeds(row.width, seedsAt);
  LeftSeed leftSeed;
  forEachSixteen(row.width, [&](int first, __mmask16 lanes) {
    fetchUpcoming(row, first);
    const __mmask16 seeds = rowSeeds.advanceTo(first);
    const __m512 cells = _mm512_maskz_loadu_ps(lanes, row.cells + first);
    __m256i* const stepsOut = reinterpret_cast<__m256i*>(row.steps + first);
    if (seeds == kAllLanes) {
      _mm256_storeu_si256(stepsOut, _mm256_setzero_si256());
      leftSeed = lastLane(first, cells);
      return;
    }
    const Nearest own = nearest16(row, first, rowSeeds.beyond(), seeds, cells, leftSeed);
    const __m512i ownSteps = _mm512_min_epi32(own.left, own.right);
    const __m512i below = _mm512_add_epi32(loadSteps(row.belowSteps + first), gap);
    const __mmask16 takesBelow = _mm512_mask_cmple_epi32_mask(lanes, below, ownSteps);
    _mm256_storeu_si256(stepsOut, _mm512_cvtepi32_epi16(_mm512_min_epi32(below, ownSteps)));
    const __m512 values = _mm512_mask_loadu_ps(own.value, takesBelow, row.belowCells + first);
    _mm512_mask_storeu_ps(row.cells + first, lanes, values);
  });
}

void writeCells(const Row& row, int first, __mmask16 lanes, __m512i aboveKeys, __m512 aboveValues) {
  const __m512i below =
      _mm512_add_epi32(loadSteps(row.belowSteps + first), _mm512_set1_epi32(row.belowGap));
  const __mmask16 takesBelow =
      _mm512_mask_cmple_epi32_mask(lanes, _mm512_slli_epi32(below, 1), aboveKeys);
  const __m512 values = _mm512_mask_loadu_ps(aboveValues, takesBelow, row.belowCells + first);
  _mm512_mask_storeu_ps(row.cells + first, lanes, values);
}

void fillFromAll(Row row) {
  const __m512i gap = _mm512_set1_epi32(2 * row.aboveGap), one = _mm512_set1_epi32(1);
  const auto seedsAt = [&](int first, __mmask16 lanes) {
    return stepSeeds(row.steps + first, lanes);
  };
  RowSeeds rowSeeds(row.width, seedsAt);
  LeftSeed leftSeed;
  forEachSixteen(row.width, [&](int first, __mmask16 lanes) {
    fetchUpcoming(row, first);
    const __mmask16 seeds = rowSeeds.advanceTo(first);
    const __m512 cells = _mm512_maskz_loadu_ps(lanes, row.cells + first);
    if (seeds == kAllLanes) {
      _mm512_storeu_si512(row.aboveKeys + first, one);
      _mm512_storeu_ps(row.aboveValues + first, cells);
      leftSeed = lastLane(first, cells);
      return;
    }
    const Nearest own = nearest16(row, first, rowSeeds.beyond(), seeds, cells, leftSeed);
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
  });
}

void fillBetween(Row row) {
  const __m512i gap = _mm512_set1_epi32(2 * row.aboveGap);
  forEachSixteen(row.width, [&](int first, __mmask16 lanes) {
    writeCells(row, first, lanes, _mm512_add_epi32(_mm512_loadu_si512(row.aboveKeys + first), gap),
               _mm512_loadu_ps(row.aboveValues + first));
  });
}

} // namespace

const ShortFillKernels& avx512FillKernels() {
  static const ShortFillKernels kernels{hasSeed, fillFromBelow, fillFromAll, fillBetween};
  return kernels;
}

} // namespace velmorn
