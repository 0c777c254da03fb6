// Positions of a simulated data-code board.
#include "velmorn/simulate_code_shots.h"

#include <algorithm>
#include <cmath>

#include <opencv2/calib3d.hpp>

#include "velmorn/code_board_picture.h"
#include "velmorn/pose.h"
#include "velmorn/simulate_random.h"

namespace velmorn::tool {
namespace {

constexpr double kSquarePixels = 54; // a module of 12 x 12 then has more than three
constexpr double kBoardShare = 0.94; // distance of the board in heights
constexpr double kCovered = 0.9;     // of the seen ground's sides
constexpr int kFewestSquares = 6;
constexpr int kMostSquares = 99; // beyond, the texts are longer and the modules smaller

constexpr double kLowestRim = 0.01; // above the ground, heights
constexpr double kLifted = 0.08;    // beyond that at most, heights
constexpr double kMostRise = 0.08;  // of the rim by the tilt, heights
constexpr double kMostTilt = 8;     // degrees
constexpr double kMostTurn = 3;     // degrees
constexpr double kMostShift = 0.05; // heights

int squaresFor(double length, double square) {
  return std::clamp(static_cast<int>(kCovered * length / square), kFewestSquares, kMostSquares);
}

cv::Matx33d rotationBy(const cv::Vec3d& degrees) {
  cv::Matx33d rotation;
  cv::Rodrigues(degrees * (CV_PI / 180), rotation);
  return rotation;
}

// The angle that lifts the end of a board by the rise, at most kMostTilt.
double tiltFor(double rise, double length) {
  const double sine = std::min(1.0, rise / (length / 2));
  return std::min(std::asin(sine) * 180 / CV_PI, kMostTilt);
}

// The paper's corners from the board's middle.
std::vector<cv::Vec3d> paperCorners(const CodeBoardSpec& board) {
  const double beyond = 2 * (kPlainRim + kCodeBoardMargin);
  const double x = (board.columns + beyond) * board.square / 2;
  const double y = (board.rows + beyond) * board.square / 2;
  return {{-x, -y, 0}, {x, -y, 0}, {x, y, 0}, {-x, y, 0}};
}

cv::Matx44d drawPosition(const SimulateJob& job, const cv::Rect2d& seen, const CodeBoardSpec& board,
                         cv::RNG& random) {
  const double width = board.columns * board.square, height = board.rows * board.square;
  const double rise = kMostRise * job.height, shift = kMostShift * job.height;
  const double aboutX = tiltFor(rise, height), aboutY = tiltFor(rise, width);
  // In braces, where the numbers are drawn from left to right with every compiler.
  const cv::Vec3d degrees{random.uniform(-aboutX, aboutX), random.uniform(-aboutY, aboutY),
                          random.uniform(-kMostTurn, kMostTurn)};
  const cv::Vec3d off{random.uniform(-shift, shift), random.uniform(-shift, shift),
                      random.uniform(0.0, kLifted * job.height)};
  const cv::Matx33d worldFromFlat(1, 0, 0, 0, -1, 0, 0, 0, -1); // upright from above
  const cv::Matx33d R = worldFromFlat * rotationBy(degrees);
  double lowest = 0;
  for (const cv::Vec3d& corner : paperCorners(board)) lowest = std::min(lowest, (R * corner)[2]);
  const cv::Vec3d middle = cv::Vec3d(seen.x + seen.width / 2, seen.y + seen.height / 2,
                                     kLowestRim * job.height - lowest) +
                           off;
  const cv::Vec3d T = middle - R * cv::Vec3d(width / 2, height / 2, 0);
  return poseFrom(cv::Mat(R), cv::Mat(T));
}

} // namespace

CodeBoardSpec codeBoardOf(const SimulateJob& job, const SimulatedRig& rig) {
  const double wanted = kSquarePixels * unitsPerPixel(job, rig, kBoardShare);
  const double square = job.code.square.value_or(roundedUp(wanted));
  const cv::Size squares = job.code.squares.value_or(
      cv::Size(squaresFor(rig.seen.width, square), squaresFor(rig.seen.height, square)));
  return {squares.width, squares.height, square};
}

std::vector<BoardPosition> codeShots(const SimulateJob& job, const SimulatedRig& rig,
                                     const CodeBoardSpec& board) {
  std::vector<std::vector<std::size_t>> groups = job.code.shots.groups;
  if (groups.empty()) groups.emplace_back(); // one, of all cameras
  cv::RNG random(randomStart(job.seed, RandomUse::kCodeShots));
  std::vector<BoardPosition> positions;
  for (const std::vector<std::size_t>& group : groups) {
    for (int i = 0; i < job.code.shots.shots; ++i) {
      BoardPosition position;
      position.worldFromBoard = drawPosition(job, rig.seen, board, random);
      if (!group.empty()) position.absent = absentFor(job, job.code.shots, group);
      positions.push_back(position);
    }
  }
  return positions;
}

} // namespace velmorn::tool
