#include "stitching/cam_relation_tree.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stitching/relative_pose.h"
#include "stitching/solve_pnp_probe.h"
#include "support/matchers.h"
#include "support/synthetic_rig.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Node = std::shared_ptr<CamRalationTree>;

constexpr int kShots = 3;
constexpr float kSquare = 25;

Node rootFor(const std::string& camID) {
  const auto root = std::make_shared<CamRalationTree>();
  root->camID = camID;
  return root;
}

std::vector<std::string> childIDs(const Node& node) {
  std::vector<std::string> ids;
  for (const Node& child : node->children) ids.push_back(child->camID);
  return ids;
}

class CamRelationTree : public TempDirTest {
 protected:
  void makeRigOf(int cameraCount, const ViewGroups& groups) {
    RigOptions options;
    options.cameraCount = cameraCount;
    options.groups = groups;
    options.shotsPerGroup = kShots;
    rig = makeRig(options);
    corners = rig.cornerMap(0.1);
  }

  // A tree from one camera, with the others as candidates in the order given; adds to `height`.
  Node grow(const std::string& base, const std::vector<std::string>& candidates) {
    const Node root = rootFor(base);
    buildCamRalationTree(root, candidates, corners, rig.intrinsicMatrices(),
                         rig.distortionMatrices(), rig.board.patternSize(), kSquare, kShots,
                         height);
    return root;
  }

  SyntheticRig rig;
  CornerMap corners;
  int height = 0;
};

TEST_F(CamRelationTree, NewNodeIsEmpty) {
  const CamRalationTree node;
  EXPECT_EQ(node.parent.lock(), nullptr);
  EXPECT_THAT(node.children, IsEmpty());
  EXPECT_EQ(node.camID, "");
  EXPECT_TRUE(node.R.empty());
  EXPECT_TRUE(node.T.empty());
  EXPECT_EQ(node.rtError, 0);
}

TEST_F(CamRelationTree, CandidatesBecomeChildrenInTheirOrder) {
  makeRigOf(4, rowGroups(4));
  const Node root = grow("cam0", {"cam3", "cam1", "cam2"});
  EXPECT_THAT(childIDs(root), ElementsAre("cam3", "cam1", "cam2"));
  EXPECT_EQ(height, 1);
  for (const Node& child : root->children) {
    EXPECT_EQ(child->parent.lock(), root);
    EXPECT_THAT(child->children, IsEmpty());
  }
}

TEST_F(CamRelationTree, RootKeepsNoTransform) {
  makeRigOf(2, rowGroups(2));
  const Node root = grow("cam0", {"cam1"});
  EXPECT_EQ(root->camID, "cam0");
  EXPECT_EQ(root->parent.lock(), nullptr);
  EXPECT_TRUE(root->R.empty());
  EXPECT_TRUE(root->T.empty());
  EXPECT_EQ(root->rtError, 0);
}

TEST_F(CamRelationTree, LinkIsChildFromParent) {
  makeRigOf(2, rowGroups(2));
  const Node child = grow("cam0", {"cam1"})->children.at(0);
  cv::Mat R, T;
  float residual = 0;
  ASSERT_EQ(calCameraRT("cam1", "cam0", corners, rig.intrinsicMatrices(), rig.distortionMatrices(),
                        rig.board.patternSize(), kSquare, kShots, R, T, residual),
            0);
  EXPECT_EQ(cv::norm(child->R, R, cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(child->T, T, cv::NORM_INF), 0);
  EXPECT_EQ(child->rtError, residual);
  EXPECT_GT(residual, 0);
  EXPECT_THAT(transformOf(child->R, child->T), extrinsicNear(rig.camFromCam(1, 0), 0.5, 5));
}

TEST_F(CamRelationTree, ChainGrowsDownwards) {
  makeRigOf(4, chainGroups(4));
  const Node root = grow("cam0", {"cam1", "cam2", "cam3"});
  ASSERT_THAT(childIDs(root), ElementsAre("cam1"));
  ASSERT_THAT(childIDs(root->children[0]), ElementsAre("cam2"));
  ASSERT_THAT(childIDs(root->children[0]->children[0]), ElementsAre("cam3"));
  EXPECT_EQ(height, 3);
}

TEST_F(CamRelationTree, HeightIsAddedToTheCounter) {
  makeRigOf(3, chainGroups(3));
  height = 7;
  grow("cam0", {"cam1", "cam2"});
  EXPECT_EQ(height, 9);
}

TEST_F(CamRelationTree, HeightIsTheLongestPath) {
  // From cam2: cam1 with cam0 below, and cam3 with cam4 and cam5 below each other.
  makeRigOf(6, chainGroups(6));
  const Node root = grow("cam2", {"cam0", "cam1", "cam3", "cam4", "cam5"});
  EXPECT_THAT(childIDs(root), ElementsAre("cam1", "cam3"));
  EXPECT_EQ(height, 3);
  height = 0;
  grow("cam3", {"cam0", "cam1", "cam2", "cam4", "cam5"}); // the deeper branch is visited first
  EXPECT_EQ(height, 3);
}

TEST_F(CamRelationTree, NothingToLinkGivesHeightZero) {
  makeRigOf(3, {{0, 1}});
  EXPECT_THAT(childIDs(grow("cam2", {"cam0", "cam1"})), IsEmpty());
  EXPECT_THAT(childIDs(grow("cam0", {})), IsEmpty());
  EXPECT_EQ(height, 0);
}

TEST_F(CamRelationTree, CandidateOutOfReachIsLeftOut) {
  makeRigOf(4, {{0, 1}, {1, 2}});
  const Node root = grow("cam0", {"cam3", "cam2", "cam1"});
  ASSERT_THAT(childIDs(root), ElementsAre("cam1"));
  ASSERT_THAT(childIDs(root->children[0]), ElementsAre("cam2"));
  EXPECT_THAT(childIDs(root->children[0]->children[0]), IsEmpty());
  EXPECT_EQ(height, 2);
}

TEST_F(CamRelationTree, EveryChildIsOfferedTheSameCandidates) {
  makeRigOf(4, diamondGroups(4));
  const Node root = grow("cam0", {"cam1", "cam2", "cam3"});
  ASSERT_THAT(childIDs(root), ElementsAre("cam1", "cam2"));
  EXPECT_THAT(childIDs(root->children[0]), ElementsAre("cam3"));
  EXPECT_THAT(childIDs(root->children[1]), ElementsAre("cam3"));
  EXPECT_EQ(height, 2);
}

TEST_F(CamRelationTree, LinkedCameraIsNotOfferedAgainBelow) {
  makeRigOf(3, rowGroups(3));
  const Node root = grow("cam0", {"cam1", "cam2"});
  EXPECT_THAT(childIDs(root->children[0]), IsEmpty());
  EXPECT_THAT(childIDs(root->children[1]), IsEmpty());
}

// Two poses per shared image and pair tried; a pair without shared images costs none.
TEST_F(CamRelationTree, EveryPairIsEstimatedAnew) {
  makeRigOf(4, diamondGroups(4));
  const SolvePnpProbe probe;
  grow("cam0", {"cam1", "cam2", "cam3"});
  EXPECT_EQ(probe.calls().size(), 4U * 2 * kShots); // 1-0, 2-0, 3-1, 3-2
  grow("cam0", {"cam1", "cam2", "cam3"});
  EXPECT_EQ(probe.calls().size(), 8U * 2 * kShots);
}

TEST_F(CamRelationTree, CandidatesOutsideTheCornersAreReportedAndLeftOut) {
  makeRigOf(2, rowGroups(2));
  const ConsoleCapture console;
  EXPECT_THAT(childIDs(grow("cam0", {"none", "cam1"})), ElementsAre("cam1"));
  // Tried below cam0 and again below cam1.
  EXPECT_EQ(console.text(),
            "calCameraRT func: camera ID is error\ncalCameraRT func: camera ID is error\n");
}

TEST_F(CamRelationTree, IsFreedWithItsRoot) {
  makeRigOf(4, diamondGroups(4));
  Node root = grow("cam0", {"cam1", "cam2", "cam3"});
  std::vector<std::weak_ptr<CamRalationTree>> nodes = {root};
  for (const Node& child : root->children) {
    nodes.push_back(child);
    for (const Node& grandchild : child->children) nodes.push_back(grandchild);
  }
  EXPECT_EQ(nodes.size(), 5U);
  EXPECT_EQ(root.use_count(), 1);
  root.reset();
  for (const auto& node : nodes) EXPECT_TRUE(node.expired());
}

} // namespace
} // namespace velmorn
