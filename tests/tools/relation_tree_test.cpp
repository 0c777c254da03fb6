// Where the cameras stand in the drawing of their links, worked out by hand.
#include "velmorn/relation_tree.h"

#include <gmock/gmock.h>

#include "tools/record_sample.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;

std::vector<CameraRecord> tree(const std::vector<std::pair<std::string, std::string>>& links) {
  std::vector<CameraRecord> cameras;
  for (const auto& [id, parent] : links) cameras.push_back(cameraAt(id, parent, {}));
  return cameras;
}

// b has two children, of which d has one:   b - a
//                                             \ d - c
TEST(RelationTree, PutsParentsHalfwayBetweenTheirChildren) {
  const RelationTree drawn = layOutTree(tree({{"a", "b"}, {"b", ""}, {"c", "d"}, {"d", "b"}}));
  ASSERT_EQ(drawn.nodes.size(), 4U);
  EXPECT_EQ(drawn.columns, 3);
  EXPECT_EQ(drawn.rows, 2);
  const std::vector<std::size_t> cameras = {1, 0, 3, 2};
  const std::vector<int> columns = {0, 1, 1, 2};
  const std::vector<double> rows = {0.5, 0, 1, 1};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(drawn.nodes[i].camera, cameras[i]);
    EXPECT_EQ(drawn.nodes[i].column, columns[i]);
    EXPECT_EQ(drawn.nodes[i].row, rows[i]);
  }
  EXPECT_FALSE(drawn.nodes[0].parent);
  EXPECT_EQ(drawn.nodes[2].parent, 0U);
  EXPECT_EQ(drawn.nodes[3].parent, 2U);
  EXPECT_TRUE(drawn.unlinked.empty());
}

TEST(RelationTree, NamesCamerasWithoutALink) {
  std::vector<CameraRecord> cameras = tree({{"a", ""}, {"b", "a"}});
  cameras.insert(cameras.begin() + 1, unlinkedCamera("c"));
  const RelationTree drawn = layOutTree(cameras);
  EXPECT_EQ(drawn.nodes.size(), 2U);
  EXPECT_THAT(drawn.unlinked, ElementsAre(1U));
}

TEST(RelationTree, EndsForCirclesAndEqualIds) {
  EXPECT_THAT(layOutTree(tree({{"a", "b"}, {"b", "a"}})).unlinked, ElementsAre(0U, 1U));
  EXPECT_THAT(layOutTree(tree({{"a", "a"}})).unlinked, ElementsAre(0U));
  const RelationTree twice = layOutTree(tree({{"a", ""}, {"b", "a"}, {"b", "a"}, {"c", "b"}}));
  EXPECT_EQ(twice.nodes.size(), 4U);
  EXPECT_TRUE(layOutTree({}).nodes.empty());
}

} // namespace
} // namespace velmorn::tool
