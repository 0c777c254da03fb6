// How the cameras before a data-code board are linked, and how well the links agree with the images
// that they were not computed from.
#ifndef VELMORN64_TOOLS_DATA_CODE_LINKS_H
#define VELMORN64_TOOLS_DATA_CODE_LINKS_H

#include <optional>
#include <string>
#include <vector>

#include "velmorn/camera_links.h"
#include "velmorn/data_code_shots.h"

namespace velmorn::tool {

// Parent and depth of every camera that the tree from this base reaches, without transforms.
PlaceMap growDataCodeTree(const Rig& rig, const OutcomeMap& outcomes, const std::string& base);

// The places for a finished run. Unlike a plain board's, the result's entries are baseFromCam,
// through other cameras too. Throws ToolError for a camera that the images do not link.
PlaceMap findDataCodePlaces(const Rig& rig, const OzKStitchResult& result,
                            const OutcomeMap& outcomes);

// The cameras without a link to the base, or to most of the others when the base is to be chosen.
std::vector<const RigCamera*> camerasWithoutLink(const Rig& rig, const OutcomeMap& outcomes);

// The mean distance between the board's corners as the two cameras place them, in the common board
// positions after the first one, which the link was computed from. Nothing when there is no other.
std::optional<float> linkResidual(const std::vector<DataCodeShot>& parent,
                                  const std::vector<DataCodeShot>& cam,
                                  const cv::Matx44d& parentFromCam);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_DATA_CODE_LINKS_H
