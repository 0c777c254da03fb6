// Grows from one square over the board.
#include "brantis64/grid_growth.h"

#include <array>
#include <cmath>
#include <queue>
#include <vector>

#include "brantis64/blur_estimate.h"
#include "brantis64/corner_prediction.h"

namespace velmorn::brantis {
namespace {

// How far the seeds' places may be off, and how far predictions, squares.
constexpr double kSeedSearch = 0.09;
constexpr double kGrowthSearch = 0.1;

// A square's side by its code's, as readers outline codes: as given, then from the modules' outer
// edges to their centres.
constexpr std::array<double, 7> kOutlineFactors{1, 4.0 / 3, 1.4, 1.46, 1.27, 1.53, 1.62};

// Blurs to try while none is known, pixels; the second where the first finds nothing.
constexpr std::array<double, 2> kStartBlurs{kUnknownBlur, 1.8};

constexpr std::size_t kFewestSeedCorners = 3; // one may lie outside the image
constexpr std::size_t kTrialCorners = 24;     // found around the square in a trial
constexpr std::size_t kSureCorners = 16;      // a trial with as many needs no further ones

constexpr int kThinSpacing = 2; // squares between neighbours where the grid is grown thinly
constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

// How much a place's support must have grown to be tried again, and how often in all.
constexpr float kMoreSupport = 1.4F;

struct Candidate {
  float support;
  GridPoint at;

  // Ties are broken so that every run grows alike.
  bool operator<(const Candidate& other) const {
    if (support != other.support) return support < other.support;
    if (at.row != other.at.row) return at.row > other.at.row;
    return at.column > other.at.column;
  }
};

// Known corners within two steps of `spacing` squares, the near ones counting more.
float supportOf(const CornerGrid& grid, GridPoint at, int spacing) {
  float support = 0;
  for (int dy = -2; dy <= 2; ++dy)
    for (int dx = -2; dx <= 2; ++dx)
      if ((dx != 0 || dy != 0) && grid.find(at + spacing * GridPoint{dx, dy}) != nullptr)
        support += 1 / static_cast<float>(dx * dx + dy * dy);
  return support;
}

double contrastAround(const CornerGrid& grid, GridPoint at) {
  double sum = 0;
  int count = 0;
  for (int dy = -2; dy <= 2; ++dy)
    for (int dx = -2; dx <= 2; ++dx)
      if (const GridCorner* corner = grid.find(at + GridPoint{dx, dy})) {
        sum += corner->contrast;
        ++count;
      }
  return count == 0 ? 0 : sum / count;
}

class Growth {
 public:
  // Which places are looked at.
  enum class Places { kAll, kThin, kNotEnclosed };

  Growth(CornerSearch& search, CornerGrid& grid)
      : search_(search), grid_(grid), origin_(grid.corners().front().at), tried_(origin_, 0.0F) {}

  void run(Places places, std::size_t most) {
    places_ = places;
    spacing_ = places == Places::kThin ? kThinSpacing : 1;
    queue_ = {};
    for (std::size_t i = 0; i < grid_.corners().size(); ++i) addCandidates(grid_.corners()[i].at);
    while (!queue_.empty() && grid_.corners().size() < most) {
      const Candidate candidate = queue_.top();
      queue_.pop();
      if (grid_.find(candidate.at) != nullptr) continue;
      if (candidate.support < kMoreSupport * tried_[candidate.at]) continue;
      tried_[candidate.at] = candidate.support;
      if (tryCandidate(candidate.at)) addCandidates(candidate.at);
    }
  }

 private:
  void addCandidates(GridPoint around) {
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) {
        const GridPoint at = around + spacing_ * GridPoint{dx, dy};
        if (!grid_.reaches(at) || !tried_.contains(at) || grid_.find(at) != nullptr) continue;
        if (isWanted(at)) queue_.push({supportOf(grid_, at, spacing_), at});
      }
  }

  bool isWanted(GridPoint at) const {
    if (places_ == Places::kAll) return true;
    const GridPoint beyondThin = (at - origin_) % kThinSpacing;
    if (places_ == Places::kThin) return beyondThin == GridPoint{0, 0};
    return !isEnclosed(at, beyondThin);
  }

  // Whether all the places of the thin grid around are known.
  bool isEnclosed(GridPoint at, GridPoint beyondThin) const {
    const GridPoint lower = at - beyondThin;
    for (int row : {0, beyondThin.row == 0 ? 0 : kThinSpacing})
      for (int column : {0, beyondThin.column == 0 ? 0 : kThinSpacing})
        if (grid_.find(lower + GridPoint{column, row}) == nullptr) return false;
    return true;
  }

  bool tryCandidate(GridPoint at) {
    LocalFrame frame;
    if (!predictCorner(grid_, at, frame)) return false;
    GridCorner found;
    if (!search_.find(frame, at, {contrastAround(grid_, at), kGrowthSearch}, found)) return false;
    grid_.insert(found);
    return true;
  }

  CornerSearch& search_;
  CornerGrid& grid_;
  GridPoint origin_;
  GridMap<float> tried_;
  Places places_ = Places::kAll;
  int spacing_ = 1; // squares from a known corner to the places looked at
  std::priority_queue<Candidate> queue_;
};

// The corners of the square itself, then the blur there, then a few corners around.
CornerGrid trial(CornerSearch& search, const SeedSquare& square, double factor) {
  CornerGrid grid(square.upperLeft);
  for (const GridPoint& corner : SeedSquare::kCorners) {
    GridCorner found;
    const LocalFrame frame = frameAtCorner(square, corner, factor);
    if (search.find(frame, square.upperLeft + corner, {0, kSeedSearch}, found)) grid.insert(found);
  }
  if (grid.corners().size() < kFewestSeedCorners) return grid;
  search.setBlur(estimateBlur(search, grid, grid.corners().size()));
  growGrid(search, grid, kTrialCorners);
  return grid;
}

} // namespace

bool findSeedCorners(CornerSearch& search, const SeedSquare& square, CornerGrid& grid) {
  std::size_t most = kFewestSeedCorners - 1;
  double blur = search.blur();
  for (double startBlur : kStartBlurs) {
    for (double factor : kOutlineFactors) {
      search.setBlur(startBlur);
      CornerGrid found = trial(search, square, factor);
      if (found.corners().size() <= most) continue;
      most = found.corners().size();
      blur = search.blur();
      grid = std::move(found);
      if (most >= kSureCorners) break;
    }
    if (most >= kFewestSeedCorners) break;
  }
  search.setBlur(blur);
  return most >= kFewestSeedCorners;
}

void growGrid(CornerSearch& search, CornerGrid& grid, std::size_t most) {
  if (grid.corners().empty()) return;
  Growth(search, grid).run(Growth::Places::kAll, most);
}

void growOverBoard(CornerSearch& search, CornerGrid& grid, std::size_t dense) {
  if (grid.corners().empty()) return;
  Growth growth(search, grid);
  growth.run(Growth::Places::kAll, dense);
  if (grid.corners().size() < dense) return;
  growth.run(Growth::Places::kThin, kAll);
  growth.run(Growth::Places::kNotEnclosed, kAll);
  grid.setSpacing(kThinSpacing);
}

} // namespace velmorn::brantis
