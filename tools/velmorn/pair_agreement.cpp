// Whether two cameras stood still to each other, as the board positions that both saw tell it.
#include "velmorn/pair_agreement.h"

#include <algorithm>
#include <cmath>

#include "velmorn/board_fit.h"
#include "velmorn/half_turn.h"
#include "velmorn/pose.h"
#include "velmorn/shot_geometry.h"

namespace velmorn::tool {
namespace {

// An explanation has to leave less than this part of the distance. Noise alone, in the smallest
// groups compared, loses less than half of it.
constexpr double kExplained = 1.0 / 3;
// Distances below this part of a square are noise, whatever explains them.
constexpr double kNoise = 0.02;
// The same for half a turn, which moves the corners of a board by several squares.
constexpr double kHalfTurnNoise = 0.25;
constexpr std::size_t kLeastBefore = 2;   // positions on either side of a move
constexpr std::size_t kLeastAgreeing = 3; // positions that are left without the odd ones

using Boards = std::vector<SeenBoard>;

SeenBoard seenBoard(const StitchRecord& run, const ShotRecord& a, const ShotRecord& b) {
  SeenBoard board;
  for (const ShotRecord* shot : {&a, &b})
    for (const cv::Vec3d& place : outermostPlaces(run, *shot)) {
      board.byA.push_back(transformed(a.camFromBoard, place));
      board.byB.push_back(transformed(b.camFromBoard, place));
    }
  return board;
}

// The outermost places of a plain board come row by row: half a turn reverses them.
SeenBoard turned(const SeenBoard& board) {
  SeenBoard other = board;
  const auto half = static_cast<std::ptrdiff_t>(other.byB.size() / 2);
  std::reverse(other.byB.begin(), other.byB.begin() + half);
  std::reverse(other.byB.begin() + half, other.byB.end());
  return other;
}

// Every board as it is or turned, whichever the transform leaves less at.
Boards bestTurned(const Boards& boards, const cv::Matx44d& aFromB) {
  Boards chosen;
  for (const SeenBoard& board : boards) {
    const SeenBoard other = turned(board);
    chosen.push_back(apartAt(other, aFromB) < apartAt(board, aFromB) ? other : board);
  }
  return chosen;
}

// The least that can be left when any of the boards may be turned.
double apartWhenTurned(const Boards& boards) {
  double least = fitBoards(boards).apart;
  for (const SeenBoard& board : boards)
    for (const SeenBoard& start : {board, turned(board)}) {
      const Boards chosen = bestTurned(boards, fitBoards({start}).aFromB);
      least = std::min(least, fitBoards(chosen).apart);
    }
  return least;
}

double apartTogether(const BoardFit& before, std::size_t countBefore, const BoardFit& after,
                     std::size_t countAfter) {
  const auto n = static_cast<double>(countBefore), m = static_cast<double>(countAfter);
  return std::sqrt((n * before.apart * before.apart + m * after.apart * after.apart) / (n + m));
}

std::optional<Move> findMove(const Boards& boards, const std::vector<std::size_t>& positions,
                             double apart) {
  double least = apart * kExplained;
  std::optional<Move> move;
  for (std::size_t k = kLeastBefore; k + kLeastBefore <= boards.size(); ++k) {
    const auto cut = boards.begin() + static_cast<std::ptrdiff_t>(k);
    const BoardFit before = fitBoards(Boards(boards.begin(), cut));
    const BoardFit after = fitBoards(Boards(cut, boards.end()));
    const double left = apartTogether(before, k, after, boards.size() - k);
    if (left >= least) continue;
    least = left;
    move = {positions[k - 1], positions[k], before.aFromB, after.aFromB};
  }
  return move;
}

// Index of the board without which the others agree best.
std::size_t oddest(const Boards& boards) {
  std::size_t index = 0;
  double least = -1;
  for (std::size_t k = 0; k < boards.size(); ++k) {
    Boards others = boards;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(k));
    const double left = fitBoards(others).apart;
    if (least >= 0 && left >= least) continue;
    least = left;
    index = k;
  }
  return index;
}

std::vector<std::size_t> findOdd(Boards boards, std::vector<std::size_t> positions, double apart,
                                 double noise) {
  const std::size_t most = boards.size() / 3;
  std::vector<std::size_t> odd;
  double left = apart;
  while (left > noise && odd.size() < most && boards.size() > kLeastAgreeing) {
    const auto k = static_cast<std::ptrdiff_t>(oddest(boards));
    odd.push_back(positions[static_cast<std::size_t>(k)]);
    boards.erase(boards.begin() + k);
    positions.erase(positions.begin() + k);
    left = fitBoards(boards).apart;
    if (left < apart * kExplained) {
      std::sort(odd.begin(), odd.end());
      return odd;
    }
  }
  return {};
}

} // namespace

PairAgreement comparePair(const StitchRecord& run, const CameraRecord& a, const CameraRecord& b) {
  PairAgreement pair;
  pair.positions = sharedPositions(a, b);
  Boards boards;
  for (const std::size_t j : pair.positions)
    boards.push_back(seenBoard(run, a.shots[j], b.shots[j]));
  if (boards.size() < 2) return pair;
  pair.apart = fitBoards(boards).apart;
  if (pair.apart <= kNoise * run.square) return pair;

  const bool mayBeTurned =
      !run.hasDataCodes && looksSameAfterHalfTurn({run.board.width, run.board.height});
  pair.isHalfTurned = mayBeTurned && pair.apart > kHalfTurnNoise * run.square &&
                      apartWhenTurned(boards) < pair.apart * kExplained;
  if (pair.isHalfTurned) return pair;
  pair.move = findMove(boards, pair.positions, pair.apart);
  if (!pair.move) pair.odd = findOdd(boards, pair.positions, pair.apart, kNoise * run.square);
  return pair;
}

double apartUnder(const StitchRecord& run, const CameraRecord& a, const CameraRecord& b,
                  const cv::Matx44d& aFromB) {
  SeenBoard all;
  for (const std::size_t j : sharedPositions(a, b)) {
    const SeenBoard board = seenBoard(run, a.shots[j], b.shots[j]);
    all.byA.insert(all.byA.end(), board.byA.begin(), board.byA.end());
    all.byB.insert(all.byB.end(), board.byB.begin(), board.byB.end());
  }
  return apartAt(all, aFromB);
}

} // namespace velmorn::tool
