// Places composed from the links of trees made by hand.
#include "velmorn/camera_links.h"

#include <gmock/gmock.h>

#include <opencv2/calib3d.hpp>

#include "support/matchers.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

using Node = std::shared_ptr<CamRalationTree>;

// camFromParent of every link made here; no two commute.
cv::Matx44d someLink(double seed) {
  cv::Matx33d R;
  cv::Rodrigues(cv::Vec3d(0.3 * seed, -0.5, 0.2 + 0.1 * seed), R);
  return transformOf(R, cv::Vec3d(100, 10 * seed, -5 * seed));
}

Node addNode(const Node& parent, const std::string& id, const cv::Matx44d& camFromParent) {
  const auto node = std::make_shared<CamRalationTree>();
  node->camID = id;
  node->R = cv::Mat(camFromParent.get_minor<3, 3>(0, 0)).clone();
  node->T = cv::Mat(translationOf(camFromParent)).clone();
  node->parent = parent;
  parent->children.push_back(node);
  return node;
}

Node rootNode(const std::string& id) {
  const auto root = std::make_shared<CamRalationTree>();
  root->camID = id;
  return root;
}

TEST(ComposeLinks, PlacesTheBaseAtTheIdentity) {
  const PlaceMap places = composeLinks(*rootNode("base"));
  ASSERT_EQ(places.size(), 1U);
  EXPECT_EQ(cv::norm(places.at("base").baseFromCam - cv::Matx44d::eye()), 0);
  EXPECT_EQ(places.at("base").parent, "");
  EXPECT_EQ(places.at("base").depth, 0);
}

TEST(ComposeLinks, ComposesABranchingTreeOfDepthThree) {
  const cv::Matx44d aFromBase = someLink(1), bFromA = someLink(2), cFromB = someLink(3);
  const cv::Matx44d dFromA = someLink(4), eFromBase = someLink(5);
  const Node root = rootNode("base");
  const Node a = addNode(root, "a", aFromBase);
  const Node b = addNode(a, "b", bFromA);
  addNode(b, "c", cFromB);
  addNode(a, "d", dFromA);
  addNode(root, "e", eFromBase);

  const PlaceMap places = composeLinks(*root);
  ASSERT_EQ(places.size(), 6U);
  const auto expectPlace = [&](const std::string& id, const cv::Matx44d& camFromBase,
                               const std::string& parent, int depth) {
    const CameraPlace& place = places.at(id);
    EXPECT_THAT(place.camFromBase, extrinsicNear(camFromBase, 1e-9, 1e-9)) << id;
    EXPECT_THAT(place.baseFromCam, extrinsicNear(camFromBase.inv(), 1e-9, 1e-9)) << id;
    EXPECT_EQ(place.parent, parent);
    EXPECT_EQ(place.depth, depth);
  };
  expectPlace("a", aFromBase, "base", 1);
  expectPlace("b", bFromA * aFromBase, "a", 2);
  expectPlace("c", cFromB * bFromA * aFromBase, "b", 3);
  expectPlace("d", dFromA * aFromBase, "a", 2);
  expectPlace("e", eFromBase, "base", 1);
}

// The worked example of docs/frames.md.
TEST(ComposeLinks, WorkedExample) {
  const cv::Matx44d pFromB(0, -1, 0, 100, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
  const cv::Matx44d cFromP(1, 0, 0, 0, 0, 0, -1, 50, 0, 1, 0, 0, 0, 0, 0, 1);
  const Node root = rootNode("B");
  const Node p = addNode(root, "P", pFromB);
  addNode(p, "C", cFromP);

  const CameraPlace place = composeLinks(*root).at("C");
  const cv::Matx44d cFromB(0, -1, 0, 100, 0, 0, -1, 50, 1, 0, 0, 0, 0, 0, 0, 1);
  const cv::Matx44d bFromC(0, 0, 1, 0, -1, 0, 0, 100, 0, -1, 0, 50, 0, 0, 0, 1);
  EXPECT_EQ(cv::norm(place.camFromBase - cFromB), 0);
  EXPECT_EQ(cv::norm(place.baseFromCam - bFromC), 0);

  MatrixMap rotations, translations;
  ResidualMap residuals;
  chainCamRalationTree(root, rotations, translations, residuals);
  const cv::Matx44d chained(0, 0, 1, 50, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1);
  EXPECT_EQ(cv::norm(poseFrom(rotations.at("C"), translations.at("C")) - chained), 0);
  EXPECT_EQ(translationOf(inversePose(chained)), cv::Vec3d(0, 0, -50));
}

TEST(ComposeLinks, LeavesTheTreeAsItIs) {
  const cv::Matx44d aFromBase = someLink(1), bFromA = someLink(2);
  const Node root = rootNode("base");
  const Node a = addNode(root, "a", aFromBase);
  const Node b = addNode(a, "b", bFromA);
  composeLinks(*root);
  EXPECT_EQ(cv::norm(poseFrom(a->R, a->T) - aFromBase), 0);
  EXPECT_EQ(cv::norm(poseFrom(b->R, b->T) - bFromA), 0);
}

TEST(ComposeLinks, KeepsTheOccurrenceThatComesLast) {
  const Node root = rootNode("base");
  const Node a = addNode(root, "a", someLink(1));
  const Node b = addNode(root, "b", someLink(2));
  addNode(a, "twice", someLink(3));
  addNode(b, "twice", someLink(4));
  const CameraPlace place = composeLinks(*root).at("twice");
  EXPECT_EQ(place.parent, "b");
  EXPECT_THAT(place.camFromBase, extrinsicNear(someLink(4) * someLink(2), 1e-9, 1e-9));
}

TEST(ComposeLinks, LastMeansDepthFirst) {
  // The deep occurrence under the first child comes before the shallow one under the second.
  const Node root = rootNode("base");
  const Node a = addNode(root, "a", someLink(1));
  const Node b = addNode(root, "b", someLink(2));
  const Node deep = addNode(a, "deep", someLink(3));
  addNode(deep, "twice", someLink(4));
  addNode(b, "twice", someLink(5));
  EXPECT_EQ(composeLinks(*root).at("twice").depth, 2);
}

TEST(SharedViews, CountsPositionsThatBothSaw) {
  constexpr ImageOutcome kYes = ImageOutcome::kBoardFound;
  EXPECT_EQ(sharedViews({kYes, kYes, ImageOutcome::kNoBoard, kYes},
                        {kYes, ImageOutcome::kNotLoaded, kYes, kYes}),
            2);
  EXPECT_EQ(sharedViews({}, {}), 0);
}

} // namespace
} // namespace velmorn::tool
