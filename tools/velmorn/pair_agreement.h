// Whether two cameras stood still to each other, as the board positions that both saw tell it.
//
// One rigid transform is fitted to the boards as the two cameras place them. Where it leaves much
// more than the same fit to some of the positions does, something happened between the others.
#ifndef VELMORN64_TOOLS_PAIR_AGREEMENT_H
#define VELMORN64_TOOLS_PAIR_AGREEMENT_H

#include <cstddef>
#include <optional>
#include <vector>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

// One camera moved between two board positions that both saw.
struct Move {
  std::size_t lastBefore = 0; // board position
  std::size_t firstAfter = 0;
  cv::Matx44d aFromBBefore = cv::Matx44d::eye();
  cv::Matx44d aFromBAfter = cv::Matx44d::eye();
};

struct PairAgreement {
  std::vector<std::size_t> positions; // board positions that both saw
  double apart = 0; // root mean square distance between the boards as a and b place them, under one
                    // transform; length unit, 0 with fewer than two positions
  bool isHalfTurned = false;    // they agree when one camera's boards are turned by half a turn
  std::optional<Move> move;     // they agree before and after a position, but not across
  std::vector<std::size_t> odd; // positions without which the others agree

  bool isExplained() const { return isHalfTurned || move || !odd.empty(); }
};

// The first explanation that fits is given: half a turn, a move, odd positions.
PairAgreement comparePair(const StitchRecord& run, const CameraRecord& a, const CameraRecord& b);

// How far the boards that both saw are apart under a given transform: root mean square, length
// unit; 0 without such a board.
double apartUnder(const StitchRecord& run, const CameraRecord& a, const CameraRecord& b,
                  const cv::Matx44d& aFromB);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PAIR_AGREEMENT_H
