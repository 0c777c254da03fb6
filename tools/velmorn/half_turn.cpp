// Boards that look the same after half a turn, whose first corner may be at either end.
#include "velmorn/half_turn.h"

#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr float kLargestResidual = 0.25F; // squares; a link that fits has a small part of it

bool isAmbiguous(const Rig& rig) { return !rig.hasDataCodes && looksSameAfterHalfTurn(rig.board); }

} // namespace

bool looksSameAfterHalfTurn(tagOzKSize board) { return (board.width + board.height) % 2 == 0; }

std::string halfTurnWarning(const Rig& rig) {
  if (!isAmbiguous(rig)) return "";
  return "a board with " + std::to_string(rig.board.width) + "x" +
         std::to_string(rig.board.height) +
         " inner corners looks the same after half a turn, and the cameras may disagree about its "
         "first corner; boards with one odd and one even number, such as 9x6, are safe";
}

void requireSameFirstCorner(const Rig& rig, const StitchedRig& stitched) {
  if (!isAmbiguous(rig)) return;
  for (const StitchedCamera& camera : stitched.cameras) {
    const float residual = camera.residual.value_or(0);
    if (residual <= kLargestResidual * rig.square) continue;
    const std::string reason =
        "cameras " + inQuotes(camera.id) + " and " + inQuotes(camera.place.parent) +
        " probably disagree about the board's first corner (half a turn): the "
        "residual of their link is " +
        shortNumberText(static_cast<double>(residual)) + ", with squares of " +
        shortNumberText(static_cast<double>(rig.square)) +
        "; use a board with one odd and one even number of inner corners, or take the "
        "images with the board upright in all cameras";
    throw StitchFailure(reason, stitched);
  }
}

} // namespace velmorn::tool
