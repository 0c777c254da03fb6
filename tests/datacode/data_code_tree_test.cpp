// The tree of cameras with poses in common board positions.
#include "datacode/data_code_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>

#include "support/matchers.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Node = std::shared_ptr<CamRalationTree>;

cv::Mat pose(double x, double turn) {
  cv::Mat R, matrix = cv::Mat::eye(4, 4, CV_64FC1);
  cv::Rodrigues(cv::Vec3d(0.1, turn, -0.2), R);
  R.copyTo(matrix(cv::Rect(0, 0, 3, 3)));
  matrix.at<double>(0, 3) = x;
  matrix.at<double>(2, 3) = 500;
  return matrix;
}

std::vector<std::string> childIDs(const Node& node) {
  std::vector<std::string> ids;
  for (const Node& child : node->children) ids.push_back(child->camID);
  return ids;
}

class DataCodeTree : public testing::Test {
 protected:
  Node grow(const std::string& root, const std::vector<std::string>& others) {
    const auto node = std::make_shared<CamRalationTree>();
    node->camID = root;
    buildDataCodeCamTree(node, others, poses, &height);
    return node;
  }

  PoseMap poses;
  int height = 0;
};

TEST_F(DataCodeTree, NothingRemainsNothingHappens) {
  height = 7;
  const Node root = grow("P", {});
  EXPECT_THAT(root->children, IsEmpty());
  EXPECT_EQ(height, 7);
  EXPECT_THAT(poses, IsEmpty());
}

TEST_F(DataCodeTree, LinkIsParentFromChild) {
  poses = {{"P", {pose(10, 0.3)}}, {"Q", {pose(-5, -0.1)}}};
  const Node root = grow("P", {"Q"});
  ASSERT_THAT(childIDs(root), ElementsAre("Q"));
  const Node child = root->children.front();
  const cv::Mat expected = poses["P"][0] * poses["Q"][0].inv();
  EXPECT_EQ(cv::norm(child->R, expected(cv::Rect(0, 0, 3, 3)), cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(child->T, expected(cv::Rect(3, 0, 1, 3)), cv::NORM_INF), 0);
  EXPECT_EQ(child->rtError, 0);
  EXPECT_EQ(child->parent.lock(), root);
  EXPECT_TRUE(root->R.empty());
  EXPECT_TRUE(root->T.empty());
  EXPECT_EQ(height, 1);
}

TEST_F(DataCodeTree, HeightIsAddedToTheCounter) {
  poses = {{"P", {pose(1, 0)}}, {"Q", {pose(2, 0)}}};
  height = 5;
  grow("P", {"Q"});
  EXPECT_EQ(height, 6);
}

TEST_F(DataCodeTree, FirstCommonShotAloneCounts) {
  poses = {{"P", {cv::Mat(), pose(1, 0), pose(100, 0.5)}},
           {"Q", {pose(2, 0), pose(3, 0.2), pose(4, 0)}}};
  const Node root = grow("P", {"Q"});
  ASSERT_EQ(root->children.size(), 1U);
  const cv::Mat expected = poses["P"][1] * poses["Q"][1].inv();
  EXPECT_EQ(cv::norm(root->children[0]->T, expected(cv::Rect(3, 0, 1, 3)), cv::NORM_INF), 0);
}

TEST_F(DataCodeTree, ChainIsTwoHighFromItsEndAndOneFromItsMiddle) {
  poses = {{"P", {pose(1, 0), cv::Mat()}},
           {"Q", {pose(2, 0), pose(2.5, 0.1)}},
           {"R", {cv::Mat(), pose(3, 0)}}};
  const Node fromEnd = grow("P", {"Q", "R"});
  EXPECT_EQ(height, 2);
  EXPECT_THAT(childIDs(fromEnd), ElementsAre("Q"));
  EXPECT_THAT(childIDs(fromEnd->children[0]), ElementsAre("R"));
  height = 0;
  const Node fromMiddle = grow("Q", {"P", "R"});
  EXPECT_EQ(height, 1);
  EXPECT_THAT(childIDs(fromMiddle), ElementsAre("P", "R"));
}

TEST_F(DataCodeTree, ChainedEntriesAreBaseFromCam) {
  poses = {{"P", {pose(1, 0), cv::Mat()}},
           {"Q", {pose(2, 0.4), pose(2.5, 0.1)}},
           {"R", {cv::Mat(), pose(3, -0.3)}}};
  const Node root = grow("P", {"Q", "R"});
  MatrixMap rotations, translations;
  ResidualMap residuals;
  chainCamRalationTree(root, rotations, translations, residuals);
  const cv::Mat expected =
      poses["P"][0] * poses["Q"][0].inv() * poses["Q"][1] * poses["R"][1].inv();
  EXPECT_THAT(transformOf(rotations["R"], translations["R"]),
              extrinsicNear(cv::Matx44d(expected), 1e-9, 1e-9));
  EXPECT_EQ(residuals["R"], 0);
}

// Every child is offered the same cameras.
TEST_F(DataCodeTree, CameraSharedByTwoChildrenIsPlacedUnderBoth) {
  poses = {{"P", {pose(1, 0), cv::Mat()}},
           {"Q", {pose(2, 0), pose(2, 0)}},
           {"R", {pose(3, 0), pose(3, 0)}},
           {"S", {cv::Mat(), pose(4, 0)}}};
  const Node root = grow("P", {"Q", "R", "S"});
  EXPECT_EQ(height, 2);
  EXPECT_THAT(childIDs(root), ElementsAre("Q", "R"));
  EXPECT_THAT(childIDs(root->children[0]), ElementsAre("S"));
  EXPECT_THAT(childIDs(root->children[1]), ElementsAre("S"));
}

TEST_F(DataCodeTree, TallestBranchGivesTheHeight) {
  poses = {{"P", {pose(1, 0), cv::Mat(), cv::Mat()}},
           {"Q", {pose(2, 0), cv::Mat(), cv::Mat()}},
           {"R", {pose(3, 0), pose(3, 0), cv::Mat()}},
           {"S", {cv::Mat(), pose(4, 0), pose(4, 0)}},
           {"T", {cv::Mat(), cv::Mat(), pose(5, 0)}}};
  grow("P", {"Q", "R", "S", "T"});
  EXPECT_EQ(height, 3);
}

TEST_F(DataCodeTree, CameraWithoutPosesIsNeverPlaced) {
  poses = {{"P", {pose(1, 0)}}, {"Q", {cv::Mat()}}};
  const Node root = grow("P", {"Q"});
  EXPECT_THAT(root->children, IsEmpty());
  EXPECT_EQ(height, 0);
}

TEST_F(DataCodeTree, UnknownCamerasGainEmptyEntriesAndNothingElseChanges) {
  poses = {{"P", {pose(1, 0)}}, {"Q", {pose(2, 0)}}};
  const cv::Mat before = poses["Q"][0].clone();
  const Node root = grow("P", {"nobody", "Q"});
  EXPECT_THAT(childIDs(root), ElementsAre("Q"));
  ASSERT_EQ(poses.count("nobody"), 1U);
  EXPECT_THAT(poses["nobody"], IsEmpty());
  EXPECT_EQ(cv::norm(poses["Q"][0], before, cv::NORM_INF), 0);
}

TEST_F(DataCodeTree, UnknownRootHasNoChildren) {
  poses = {{"Q", {pose(2, 0)}}};
  EXPECT_THAT(grow("nobody", {"Q"})->children, IsEmpty());
  EXPECT_EQ(height, 0);
}

} // namespace
} // namespace velmorn
