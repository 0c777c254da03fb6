// The images of a rig that looks at a plain chessboard.
#ifndef VELMORN64_TOOLS_PLAIN_SHOTS_H
#define VELMORN64_TOOLS_PLAIN_SHOTS_H

#include "stitching/stitching_types.h"
#include "velmorn/rig_file.h"
#include "velmorn/shot_record.h"
#include "velmorn/stitch_messages.h"

namespace velmorn::tool {

// The library keeps the corners that it found to itself. Finds them again with its own search, in
// the images where the run found them.
CornerMap cornersAgain(const Rig& rig, const StitchMessages& messages);

// What the run made of every image, with the board's pose of each.
ShotMap describePlainShots(const Rig& rig, const OutcomeMap& outcomes, const CornerMap& corners);

// The word for an outcome in a result file.
const char* outcomeWord(ImageOutcome outcome);

// The size of the first image that can be read; empty without one.
cv::Size firstImageSize(const RigCamera& camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLAIN_SHOTS_H
