// Positions of a simulated plain board.
#include "velmorn/simulate_plain_shots.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <opencv2/calib3d.hpp>

#include "velmorn/pose.h"
#include "velmorn/simulate_random.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kSquarePixels = 34; // at the ground
constexpr double kBoardShare = 0.65; // of the field that the cameras have in common, at most

// Where positions are tried.
constexpr double kLowest = 0.03;        // of the board's middle above the ground, heights
constexpr double kHighest = 0.4;        // likewise
constexpr double kReach = 0.45;         // beyond the ground below the cameras' middles, heights
constexpr double kLeastTilt = 12;       // degrees
constexpr double kMostTilt = 35;        // degrees
constexpr double kMostRoll = 20;        // degrees, within the board's plane
constexpr double kLeastSteepness = 0.1; // of a line of sight that is followed to the ground

constexpr int kAttempts = 6000;
constexpr int kChoices = 12; // usable positions of which the one farthest from the others is taken

using Group = std::vector<std::size_t>;

// A board that lies flat on the ground, upright for cameras that look down.
const cv::Matx33d kWorldFromFlat(1, 0, 0, 0, -1, 0, 0, 0, -1);

cv::Matx33d rotationAbout(const cv::Vec3d& axis, double degrees) {
  cv::Matx33d rotation;
  cv::Rodrigues(axis * (degrees * CV_PI / 180), rotation);
  return rotation;
}

struct Candidate {
  cv::Matx44d worldFromBoard;
  cv::Vec3d middle; // world
};

// The points of the ground where the group's cameras look.
cv::Rect2d aimOf(const SimulatedRig& rig, const Group& group) {
  double left = std::numeric_limits<double>::max(), low = left, right = -left, high = -left;
  for (const std::size_t i : group) {
    const cv::Matx44d& pose = rig.cameras[i].worldFromCam;
    const double way = pose(2, 3) / std::max(-pose(2, 2), kLeastSteepness);
    const double x = pose(0, 3) + pose(0, 2) * way, y = pose(1, 3) + pose(1, 2) * way;
    left = std::min(left, x);
    right = std::max(right, x);
    low = std::min(low, y);
    high = std::max(high, y);
  }
  return {left, low, right - left, high - low};
}

Candidate drawCandidate(const cv::Rect2d& aim, double height, const PlainBoard& board,
                        cv::RNG& random) {
  // In braces, where the numbers are drawn from left to right with every compiler.
  const double reach = kReach * height;
  const cv::Vec3d middle{random.uniform(aim.x - reach, aim.x + aim.width + reach),
                         random.uniform(aim.y - reach, aim.y + aim.height + reach),
                         random.uniform(kLowest * height, kHighest * height)};
  const double direction = random.uniform(0.0, 2 * CV_PI);
  const double tilt = random.uniform(kLeastTilt, kMostTilt);
  const double roll = random.uniform(-kMostRoll, kMostRoll);
  const cv::Matx33d R = kWorldFromFlat *
                        rotationAbout({std::cos(direction), std::sin(direction), 0}, tilt) *
                        rotationAbout({0, 0, 1}, roll);
  const cv::Point3d middleOnBoard = middleOf(board);
  const cv::Vec3d T = middle - R * cv::Vec3d(middleOnBoard.x, middleOnBoard.y, 0);
  return {poseFrom(cv::Mat(R), cv::Mat(T)), middle};
}

bool isAboveGround(const PlainBoard& board, const cv::Matx44d& worldFromBoard) {
  const std::vector<cv::Point3d> outline = outlineOf(board);
  return std::all_of(outline.begin(), outline.end(), [&](const cv::Point3d& p) {
    return (worldFromBoard * cv::Vec4d(p.x, p.y, p.z, 1))[2] > 0;
  });
}

bool isUsable(const SimulatedRig& rig, const Group& group, const PlainBoard& board,
              const cv::Matx44d& worldFromBoard) {
  if (!isAboveGround(board, worldFromBoard)) return false;
  const auto viewOf = [&](std::size_t i) {
    return plainViewOf(rig.cameras[i], board, worldFromBoard);
  };
  for (const std::size_t i : group) {
    if (viewOf(i) != PlainView::kUsable) return false;
  }
  for (std::size_t i = 0; i < rig.cameras.size(); ++i) {
    if (viewOf(i) == PlainView::kTurned) return false;
  }
  return true;
}

// Of the places in heights and of the boards' normals.
double difference(const Candidate& a, const Candidate& b, double height) {
  constexpr double kNormalWeight = 0.5;
  const auto normalOf = [](const Candidate& c) {
    return cv::Vec3d(c.worldFromBoard(0, 2), c.worldFromBoard(1, 2), c.worldFromBoard(2, 2));
  };
  return cv::norm(a.middle - b.middle) / height +
         kNormalWeight * cv::norm(normalOf(a) - normalOf(b));
}

std::string namesOf(const Group& group) {
  std::string names;
  for (const std::size_t i : group) names += (names.empty() ? "" : ", ") + simulatedId(i);
  return names;
}

[[noreturn]] void failFor(const Group& group) {
  throw ToolError("no place for the plain board found where " + namesOf(group) +
                  (group.size() > 1 ? " see" : " sees") +
                  " the whole of it; smaller squares, fewer corners or cameras closer together "
                  "help");
}

// Sides of the ground that all cameras of a group see, as if they looked straight down.
cv::Size2d commonField(const SimulateJob& job, const SimulatedRig& rig, const Group& group) {
  const cv::Rect2d aim = aimOf(rig, group);
  cv::Size2d least(std::numeric_limits<double>::max(), std::numeric_limits<double>::max());
  for (const std::size_t i : group) {
    const CameraModel& model = rig.cameras[i].model;
    const double perPixel = job.height / model.intrinsic.matrix[0];
    least.width = std::min(least.width, model.imageSize.width * perPixel - aim.width);
    least.height = std::min(least.height, model.imageSize.height * perPixel - aim.height);
  }
  return least;
}

// The largest that leaves the board room to be tilted and moved.
double largestSquare(const SimulateJob& job, const SimulatedRig& rig) {
  const double columns = job.plain.corners.width + 1 + 2 * kPlainQuietZone;
  const double rows = job.plain.corners.height + 1 + 2 * kPlainQuietZone;
  double largest = std::numeric_limits<double>::max();
  for (const Group& group : groupsOf(job, job.plain.shots)) {
    const cv::Size2d field = commonField(job, rig, group);
    largest = std::min({largest, field.width / columns, field.height / rows});
  }
  if (largest <= 0) failFor(groupsOf(job, job.plain.shots).front());
  return roundedDown(kBoardShare * largest);
}

class GroupShots {
 public:
  GroupShots(const SimulateJob& job, const SimulatedRig& rig, const PlainBoard& board,
             const Group& group)
      : job_(job), rig_(rig), board_(board), group_(group), aim_(aimOf(rig, group)) {}

  // Adds the position that differs most from those already taken.
  void add(cv::RNG& random) {
    std::optional<Candidate> best;
    double bestDifference = -1;
    int choices = 0;
    for (int i = 0; i < kAttempts && choices < kChoices; ++i) {
      const Candidate candidate = drawCandidate(aim_, job_.height, board_, random);
      if (!isUsable(rig_, group_, board_, candidate.worldFromBoard)) continue;
      ++choices;
      const double differs = differenceToTaken(candidate);
      if (differs <= bestDifference) continue;
      best = candidate;
      bestDifference = differs;
    }
    if (!best) failFor(group_);
    taken_.push_back(*best);
  }

  const std::vector<Candidate>& taken() const { return taken_; }

 private:
  double differenceToTaken(const Candidate& candidate) const {
    double least = std::numeric_limits<double>::max();
    for (const Candidate& other : taken_) {
      least = std::min(least, difference(candidate, other, job_.height));
    }
    return least;
  }

  const SimulateJob& job_;
  const SimulatedRig& rig_;
  const PlainBoard& board_;
  const Group& group_;
  cv::Rect2d aim_;
  std::vector<Candidate> taken_;
};

} // namespace

PlainBoard plainBoardOf(const SimulateJob& job, const SimulatedRig& rig) {
  if (job.plain.square) return {job.plain.corners, *job.plain.square};
  const double wanted = roundedUp(kSquarePixels * unitsPerPixel(job, rig));
  return {job.plain.corners, std::min(wanted, largestSquare(job, rig))};
}

std::vector<BoardPosition> plainShots(const SimulateJob& job, const SimulatedRig& rig,
                                      const PlainBoard& board) {
  cv::RNG random(randomStart(job.seed, RandomUse::kPlainShots));
  std::vector<BoardPosition> positions;
  for (const Group& group : groupsOf(job, job.plain.shots)) {
    GroupShots shots(job, rig, board, group);
    for (int i = 0; i < job.plain.shots.shots; ++i) shots.add(random);
    for (const Candidate& taken : shots.taken()) {
      positions.push_back({taken.worldFromBoard, absentFor(job, job.plain.shots, group)});
    }
  }
  return positions;
}

} // namespace velmorn::tool
