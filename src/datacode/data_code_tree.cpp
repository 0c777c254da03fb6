// The tree of cameras that have a data-code board's pose in common board positions.
#include "datacode/data_code_tree.h"

#include <algorithm>

namespace velmorn {
namespace {

// targetFromSource by the first board position that both have; empty when there is none.
cv::Mat firstRelativePose(const std::vector<cv::Mat>& targetFromBoard,
                          const std::vector<cv::Mat>& sourceFromBoard) {
  const std::size_t shots = std::min(targetFromBoard.size(), sourceFromBoard.size());
  for (std::size_t k = 0; k < shots; ++k)
    if (!targetFromBoard[k].empty() && !sourceFromBoard[k].empty())
      return targetFromBoard[k] * sourceFromBoard[k].inv();
  return {};
}

std::shared_ptr<CamRalationTree> makeChild(const std::shared_ptr<CamRalationTree>& parent,
                                           const std::string& camID,
                                           const cv::Mat& parentFromChild) {
  auto child = std::make_shared<CamRalationTree>();
  child->parent = parent;
  child->camID = camID;
  child->R = parentFromChild(cv::Rect(0, 0, 3, 3)).clone();
  child->T = parentFromChild(cv::Rect(3, 0, 1, 3)).clone();
  child->rtError = 0;
  return child;
}

} // namespace

void buildDataCodeCamTree(std::shared_ptr<CamRalationTree> node,
                          const std::vector<std::string>& remaining,
                          std::map<std::string, std::vector<cv::Mat>>& poses, int* height) {
  if (remaining.empty()) return;
  const std::vector<cv::Mat>& nodeFromBoard = poses[node->camID];
  std::vector<std::string> left; // the same list for every child, hence the cameras placed twice
  for (const std::string& camID : remaining) {
    const cv::Mat nodeFromCam = firstRelativePose(nodeFromBoard, poses[camID]);
    if (nodeFromCam.empty())
      left.push_back(camID);
    else
      node->children.push_back(makeChild(node, camID, nodeFromCam));
  }
  if (node->children.empty()) return;

  int tallest = 0;
  for (const std::shared_ptr<CamRalationTree>& child : node->children) {
    int below = 0;
    buildDataCodeCamTree(child, left, poses, &below);
    tallest = std::max(tallest, below);
  }
  *height += 1 + tallest;
}

} // namespace velmorn
