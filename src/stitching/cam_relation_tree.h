// The tree of linked cameras, and the chaining of its transforms.
#ifndef VELMORN64_STITCHING_CAM_RELATION_TREE_H
#define VELMORN64_STITCHING_CAM_RELATION_TREE_H

#include <memory>
#include <string>
#include <vector>

#include "stitching/stitching_types.h"
#include "velmorn64.h"

namespace velmorn {

// One linked camera.
struct CamRalationTree {
  std::weak_ptr<CamRalationTree> parent; // empty for the root; weak, so that the tree is freed
  std::vector<std::shared_ptr<CamRalationTree>> children; // in the order they were linked
  std::string camID;
  cv::Mat R;         // camFromParent, 3x3; empty for the root
  cv::Mat T;         // camFromParent, 3x1, length unit; empty for the root
  float rtError = 0; // residual of the link to the parent, length unit
};

// Links every candidate it can to `node`, then the others below the new children, depth first.
//
// node          where to grow the tree
// candidates    cameras to link, in order of preference
// height        the number of links on the longest path below `node` is added to it
// the rest      as for calCameraRT
void buildCamRalationTree(const std::shared_ptr<CamRalationTree>& node,
                          const std::vector<std::string>& candidates, const CornerMap& corners,
                          const MatrixMap& intrinsics, const MatrixMap& distortions,
                          tagOzKSize patternSize, float squareSize, int minImages, int& height);

// Fills the three maps for every camera below `node`, depth first; a camera that occurs twice keeps
// what was visited last. A camera linked to the root gets camFromRoot. The matrices are copies: the
// tree stays as it is.
void chainCamRalationTree(const std::shared_ptr<CamRalationTree>& node, MatrixMap& rotations,
                          MatrixMap& translations, ResidualMap& residuals);

} // namespace velmorn

#endif // VELMORN64_STITCHING_CAM_RELATION_TREE_H
