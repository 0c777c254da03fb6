// Chaining along hand-made trees, whose rotations are far from commuting.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>

#include "stitching/cam_relation_tree.h"
#include "support/matchers.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using Node = std::shared_ptr<CamRalationTree>;

// The link of the hand-made camera number i, childFromParent.
cv::Matx33d rotation(int i) {
  cv::Matx33d R;
  cv::Rodrigues(cv::Vec3d(0.3 * i, 0.9 - 0.2 * i, 0.4 + 0.1 * i * i), R);
  return R;
}
cv::Vec3d translation(int i) { return {10.0 * i, 200.0 - 30 * i, -5.0 * i * i}; }

Node addChild(const Node& parent, const std::string& camID, int i) {
  const auto child = std::make_shared<CamRalationTree>();
  child->parent = parent;
  child->camID = camID;
  child->R = cv::Mat(rotation(i), true);
  child->T = cv::Mat(translation(i), true);
  child->rtError = 0.25F * static_cast<float>(i);
  parent->children.push_back(child);
  return child;
}

Node makeRoot() {
  const auto root = std::make_shared<CamRalationTree>();
  root->camID = "root";
  return root;
}

class TreeChaining : public testing::Test {
 protected:
  void chain() { chainCamRalationTree(root, rotations, translations, residuals); }

  void expectEntry(const std::string& camID, const cv::Matx33d& R, const cv::Vec3d& T, int i) {
    ASSERT_EQ(rotations.count(camID), 1U) << camID;
    EXPECT_LT(cv::norm(rotations[camID], cv::Mat(R), cv::NORM_INF), 1e-12) << camID;
    EXPECT_LT(cv::norm(translations[camID], cv::Mat(T), cv::NORM_INF), 1e-9) << camID;
    EXPECT_EQ(residuals[camID], 0.25F * static_cast<float>(i)) << camID;
  }

  Node root = makeRoot();
  MatrixMap rotations, translations;
  ResidualMap residuals;
};

void expectLinkUntouched(const Node& node, int i) {
  EXPECT_EQ(cv::norm(node->R, cv::Mat(rotation(i)), cv::NORM_INF), 0) << node->camID;
  EXPECT_EQ(cv::norm(node->T, cv::Mat(translation(i)), cv::NORM_INF), 0) << node->camID;
}

TEST_F(TreeChaining, RootAloneGivesNothing) {
  chain();
  EXPECT_THAT(rotations, IsEmpty());
  EXPECT_THAT(translations, IsEmpty());
  EXPECT_THAT(residuals, IsEmpty());
}

TEST_F(TreeChaining, ChildOfTheRootKeepsItsLinkToTheBit) {
  addChild(root, "a", 1);
  chain();
  EXPECT_THAT(rotations, ElementsAre(Key("a"))); // no entry for the root
  EXPECT_EQ(cv::norm(rotations["a"], cv::Mat(rotation(1)), cv::NORM_INF), 0);
  EXPECT_EQ(cv::norm(translations["a"], cv::Mat(translation(1)), cv::NORM_INF), 0);
  EXPECT_EQ(residuals["a"], 0.25F);
}

TEST_F(TreeChaining, GrandchildIsMultipliedFromTheLeftByItsParent) {
  addChild(addChild(root, "a", 1), "b", 2);
  chain();
  expectEntry("a", rotation(1), translation(1), 1);
  expectEntry("b", rotation(1) * rotation(2), rotation(1) * translation(2) + translation(1), 2);
}

TEST_F(TreeChaining, ThirdLevelTakesEveryParentInTurn) {
  addChild(addChild(addChild(root, "a", 1), "b", 2), "c", 3);
  chain();
  const cv::Vec3d inB = rotation(2) * translation(3) + translation(2);
  expectEntry("c", rotation(1) * rotation(2) * rotation(3), rotation(1) * inB + translation(1), 3);
  expectEntry("b", rotation(1) * rotation(2), rotation(1) * translation(2) + translation(1), 2);
}

TEST_F(TreeChaining, FourthLevelTakesEveryParentInTurn) {
  addChild(addChild(addChild(addChild(root, "a", 1), "b", 2), "c", 3), "d", 4);
  chain();
  const cv::Vec3d inC = rotation(3) * translation(4) + translation(3);
  const cv::Vec3d inB = rotation(2) * inC + translation(2);
  expectEntry("d", rotation(1) * rotation(2) * rotation(3) * rotation(4),
              rotation(1) * inB + translation(1), 4);
}

// The two orders of the product are told apart by these links.
TEST_F(TreeChaining, OutcomeIsNotTheComposedMap) {
  addChild(addChild(root, "a", 1), "b", 2);
  chain();
  const cv::Matx44d aFromRoot = transformOf(rotation(1), translation(1));
  const cv::Matx44d bFromA = transformOf(rotation(2), translation(2));
  const cv::Matx44d bFromRoot = bFromA * aFromRoot;
  const cv::Matx44d chained = transformOf(rotations["b"], translations["b"]);
  EXPECT_GT(rotationDegreesApart(chained, bFromRoot), 1);
  EXPECT_GT(translationApart(chained, bFromRoot), 1);
}

TEST_F(TreeChaining, LinksStayAsTheyAre) {
  const Node a = addChild(root, "a", 1), b = addChild(a, "b", 2), c = addChild(b, "c", 3);
  const Node d = addChild(a, "d", 4);
  chain();
  chain(); // a second pass would build on what the first one spoilt
  expectLinkUntouched(a, 1);
  expectLinkUntouched(b, 2);
  expectLinkUntouched(c, 3);
  expectLinkUntouched(d, 4);
  expectEntry("d", rotation(1) * rotation(4), rotation(1) * translation(4) + translation(1), 4);
}

TEST_F(TreeChaining, OutputsShareNoStorageWithTheTree) {
  const Node a = addChild(root, "a", 1);
  chain();
  rotations["a"].setTo(0);
  translations["a"].setTo(0);
  expectLinkUntouched(a, 1);
}

TEST_F(TreeChaining, SiblingsDoNotDisturbEachOther) {
  const Node a = addChild(root, "a", 1);
  addChild(a, "b", 2);
  addChild(a, "c", 3);
  addChild(root, "d", 4);
  chain();
  expectEntry("b", rotation(1) * rotation(2), rotation(1) * translation(2) + translation(1), 2);
  expectEntry("c", rotation(1) * rotation(3), rotation(1) * translation(3) + translation(1), 3);
  expectEntry("d", rotation(4), translation(4), 4);
}

TEST_F(TreeChaining, CameraUnderTwoSiblingsKeepsTheLastVisit) {
  addChild(addChild(root, "a", 1), "x", 2);
  addChild(addChild(root, "b", 3), "x", 4);
  chain();
  expectEntry("x", rotation(3) * rotation(4), rotation(3) * translation(4) + translation(3), 4);
  EXPECT_THAT(rotations, ElementsAre(Key("a"), Key("b"), Key("x")));
}

// Depth first: what lies below a child is visited before the child's younger sibling.
TEST_F(TreeChaining, YoungerSiblingIsVisitedAfterTheElderOnesDescendants) {
  addChild(addChild(root, "a", 1), "x", 2);
  addChild(root, "x", 3);
  chain();
  expectEntry("x", rotation(3), translation(3), 3);
}

TEST_F(TreeChaining, DescendantIsVisitedAfterAnElderSiblingOfItsParent) {
  addChild(root, "x", 3);
  addChild(addChild(root, "a", 1), "x", 2);
  chain();
  expectEntry("x", rotation(1) * rotation(2), rotation(1) * translation(2) + translation(1), 2);
}

TEST_F(TreeChaining, CameraBelowItselfKeepsTheDeeperVisit) {
  addChild(addChild(root, "x", 1), "x", 2);
  chain();
  expectEntry("x", rotation(1) * rotation(2), rotation(1) * translation(2) + translation(1), 2);
}

TEST_F(TreeChaining, OtherEntriesOfTheMapsStay) {
  residuals["elsewhere"] = 5;
  addChild(root, "a", 1);
  chain();
  EXPECT_THAT(residuals, ElementsAre(Key("a"), Key("elsewhere")));
}

} // namespace
} // namespace velmorn
