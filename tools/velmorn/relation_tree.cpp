// Where the cameras of a rig stand in a drawing of their links.
#include "velmorn/relation_tree.h"

#include <algorithm>

namespace velmorn::tool {
namespace {

class Layout {
 public:
  explicit Layout(const std::vector<CameraRecord>& cameras)
      : cameras_(cameras), isPlaced_(cameras.size(), false) {}

  RelationTree tree() {
    for (std::size_t i = 0; i < cameras_.size(); ++i) {
      if (cameras_[i].isBase && !isPlaced_[i]) place(i, std::nullopt, 0);
    }
    for (std::size_t i = 0; i < cameras_.size(); ++i) {
      if (!isPlaced_[i]) tree_.unlinked.push_back(i);
    }
    return tree_;
  }

 private:
  bool isChild(std::size_t camera, const std::string& parent) const {
    return !isPlaced_[camera] && !cameras_[camera].isBase && cameras_[camera].parent == parent;
  }

  // Returns the row that the camera got.
  double place(std::size_t camera, std::optional<std::size_t> parent, int column) {
    isPlaced_[camera] = true;
    const std::size_t node = tree_.nodes.size();
    tree_.nodes.push_back({camera, parent, column, 0});
    tree_.columns = std::max(tree_.columns, column + 1);
    std::optional<double> first;
    double last = 0;
    for (std::size_t child = 0; child < cameras_.size(); ++child) {
      if (!isChild(child, cameras_[camera].id)) continue;
      last = place(child, node, column + 1);
      if (!first) first = last;
    }
    const double row = first ? (*first + last) / 2 : static_cast<double>(tree_.rows++);
    tree_.nodes[node].row = row;
    return row;
  }

  const std::vector<CameraRecord>& cameras_;
  std::vector<bool> isPlaced_;
  RelationTree tree_;
};

} // namespace

RelationTree layOutTree(const std::vector<CameraRecord>& cameras) { return Layout(cameras).tree(); }

} // namespace velmorn::tool
