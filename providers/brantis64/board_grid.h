// The corners found so far, by their place on the board's grid.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_BOARD_GRID_H
#define VELMORN64_PROVIDERS_BRANTIS64_BOARD_GRID_H

#include <array>
#include <cstdlib>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::brantis {

// A crossing of grid lines. Square (a, b) lies between columns a - 1 and a and rows b - 1 and b.
struct GridPoint {
  int column = 0;
  int row = 0;
};

inline bool operator==(GridPoint p, GridPoint q) { return p.column == q.column && p.row == q.row; }
inline GridPoint operator+(GridPoint p, GridPoint q) {
  return {p.column + q.column, p.row + q.row};
}
inline GridPoint operator-(GridPoint p, GridPoint q) {
  return {p.column - q.column, p.row - q.row};
}
inline GridPoint operator*(int factor, GridPoint p) { return {factor * p.column, factor * p.row}; }

// What is left of either coordinate beyond the next lower multiple of `step`, 0 to step - 1.
inline GridPoint operator%(GridPoint p, int step) {
  return {(p.column % step + step) % step, (p.row % step + step) % step};
}

inline int distance2(GridPoint p, GridPoint q) {
  const GridPoint apart = p - q;
  return apart.column * apart.column + apart.row * apart.row;
}

// Squares whose column and row add up to an even number are white, so the square right of and below
// a crossing is white where the crossing's own column and row do.
inline bool whiteLowerRight(GridPoint p) { return (p.column + p.row) % 2 == 0; }

// A crossing in the image and what one square looks like there.
struct LocalFrame {
  cv::Point2d pixel;
  cv::Point2d columnStep; // pixels from one column to the next
  cv::Point2d rowStep;    // pixels from one row to the next
};

struct GridCorner {
  GridPoint at;
  cv::Point2d pixel;
  double contrast = 0; // grey levels from black to white
};

inline bool rowsFirst(const GridCorner& p, const GridCorner& q) {
  return p.at.row != q.at.row ? p.at.row < q.at.row : p.at.column < q.at.column;
}

// A value for every grid point near a centre.
template <typename Value>
class GridMap {
 public:
  // Columns and rows on each side; five thousand pixels of squares 20 pixels wide.
  static constexpr int kReach = 256;

  explicit GridMap(GridPoint centre, Value initial)
      : origin_{centre.column - kReach, centre.row - kReach}, values_(kSide * kSide, initial) {}

  bool contains(GridPoint p) const {
    const long column = static_cast<long>(p.column) - origin_.column;
    const long row = static_cast<long>(p.row) - origin_.row;
    return column >= 0 && column < kSide && row >= 0 && row < kSide;
  }

  Value& operator[](GridPoint p) { return values_[index(p)]; }
  const Value& operator[](GridPoint p) const { return values_[index(p)]; }

 private:
  static constexpr long kSide = 2 * kReach + 1;

  std::size_t index(GridPoint p) const {
    return static_cast<std::size_t>((p.row - origin_.row) * kSide + (p.column - origin_.column));
  }

  GridPoint origin_;
  std::vector<Value> values_;
};

class CornerGrid {
 public:
  explicit CornerGrid(GridPoint centre) : indices_(centre, kNone) {}

  bool reaches(GridPoint p) const { return indices_.contains(p); }

  // Columns or rows from one corner to the next at most: more than 1 where corners between known
  // ones have been left out.
  int spacing() const { return spacing_; }
  void setSpacing(int spacing) { spacing_ = spacing; }

  // Null where no corner is known.
  const GridCorner* find(GridPoint p) const {
    if (!reaches(p) || indices_[p] == kNone) return nullptr;
    return &corners_[static_cast<std::size_t>(indices_[p])];
  }

  void insert(const GridCorner& corner) {
    indices_[corner.at] = static_cast<int>(corners_.size());
    corners_.push_back(corner);
  }

  void erase(GridPoint p) {
    if (find(p) == nullptr) return;
    const auto hole = static_cast<std::size_t>(indices_[p]);
    corners_[hole] = corners_.back();
    indices_[corners_[hole].at] = static_cast<int>(hole);
    corners_.pop_back();
    indices_[p] = kNone;
  }

  const std::vector<GridCorner>& corners() const { return corners_; }

 private:
  static constexpr int kNone = -1;

  GridMap<int> indices_;
  std::vector<GridCorner> corners_;
  int spacing_ = 1;
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_BOARD_GRID_H
