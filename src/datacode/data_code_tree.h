// The tree of cameras that have a data-code board's pose in common board positions.
#ifndef VELMORN64_DATACODE_DATA_CODE_TREE_H
#define VELMORN64_DATACODE_DATA_CODE_TREE_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "stitching/cam_relation_tree.h"

namespace velmorn {

// camFromBoard by camera and board position, 4x4 CV_64FC1; empty where the camera has no pose.
using PoseMap = std::map<std::string, std::vector<cv::Mat>>;

// Links every remaining camera that shares a board position with `node` to it, by the first such
// position, then the others below the new children, depth first. A camera that shares positions
// with several children is placed under each of them.
//
// node       its children are filled; their R and T are parentFromChild, the inverse direction of
//            the plain chessboard's links
// remaining  cameras to link, in order of preference
// poses      a camera that it does not have is added without poses
// height     the number of links on the longest path below `node` is added to it
void buildDataCodeCamTree(std::shared_ptr<CamRalationTree> node,
                          const std::vector<std::string>& remaining,
                          std::map<std::string, std::vector<cv::Mat>>& poses, int* height);

} // namespace velmorn

#endif // VELMORN64_DATACODE_DATA_CODE_TREE_H
