// Where the cameras of a rig stand in a drawing of their links.
#ifndef VELMORN64_TOOLS_RELATION_TREE_H
#define VELMORN64_TOOLS_RELATION_TREE_H

#include <cstddef>
#include <optional>
#include <vector>

#include "velmorn/stitch_record.h"

namespace velmorn::tool {

struct TreeNode {
  std::size_t camera = 0;            // index in the record
  std::optional<std::size_t> parent; // index of a node before this one; none for the base
  int column = 0;                    // number of links to the base
  double row = 0;                    // a camera stands halfway between its first and last child
};

struct RelationTree {
  std::vector<TreeNode> nodes;
  std::vector<std::size_t> unlinked; // cameras that no chain of links leads to
  int columns = 0;
  int rows = 0;
};

// Base cameras in column 0 and every other one a column behind its parent; cameras without children
// take one row each, in the record's order. Ends for any parents, also for circles of them.
RelationTree layOutTree(const std::vector<CameraRecord>& cameras);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_RELATION_TREE_H
