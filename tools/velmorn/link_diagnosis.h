// Why a stitching run failed.
#ifndef VELMORN64_TOOLS_LINK_DIAGNOSIS_H
#define VELMORN64_TOOLS_LINK_DIAGNOSIS_H

#include <string>
#include <vector>

#include "velmorn/rig_file.h"
#include "velmorn/stitch_messages.h"

namespace velmorn::tool {

// The cameras that the library said it could not link, in the rig's order.
std::vector<const RigCamera*> unlinkedCameras(const Rig& rig, const StitchMessages& messages);

// One line that names the camera and what kept it from being linked, or, when the library named no
// camera, the status that it returned.
std::string failureReason(const Rig& rig, const StitchMessages& messages, int status);

// The same for cameras that are known to have no link to the base; at least one.
std::string unlinkedReason(const Rig& rig, const std::vector<const RigCamera*>& unlinked,
                           const OutcomeMap& outcomes);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_LINK_DIAGNOSIS_H
