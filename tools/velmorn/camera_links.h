// Where the cameras are relative to the base, composed from the pairwise links.
#ifndef VELMORN64_TOOLS_CAMERA_LINKS_H
#define VELMORN64_TOOLS_CAMERA_LINKS_H

#include <map>
#include <string>

#include <opencv2/core.hpp>

#include "stitching/cam_relation_tree.h"
#include "velmorn/rig_file.h"
#include "velmorn/stitch_messages.h"
#include "velmorn64.h"

namespace velmorn::tool {

// One camera's place.
struct CameraPlace {
  cv::Matx44d baseFromCam = cv::Matx44d::eye();
  cv::Matx44d camFromBase = cv::Matx44d::eye();
  std::string parent; // the camera it is linked to; empty for the base
  int depth = 0;      // links to the base; 0 for the base
};

using PlaceMap = std::map<std::string, CameraPlace>; // by camera id

// Composes the links of a tree from its root, the base: camFromBase = camFromParent parentFromBase,
// and baseFromCam from the inverses in the opposite order. A camera that occurs more than once
// keeps the occurrence that comes last in depth-first order, as the library's result does.
PlaceMap composeLinks(const CamRalationTree& base);

// Number of board positions that both cameras saw.
int sharedViews(const std::vector<ImageOutcome>& a, const std::vector<ImageOutcome>& b);

// The places for a finished run.
//
// When the messages prove that every camera was linked to the base directly, the result's own
// entries are camFromBase and are inverted. Otherwise the chained entries are no help: the tree is
// grown again from the same base, with the run's corners.
PlaceMap findPlaces(const Rig& rig, const OzKStitchResult& result, const StitchMessages& messages,
                    const CornerMap& corners);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CAMERA_LINKS_H
