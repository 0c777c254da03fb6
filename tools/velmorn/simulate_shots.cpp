// Where the boards of a simulated rig are.
#include "velmorn/simulate_shots.h"

#include <algorithm>
#include <cmath>

namespace velmorn::tool {
namespace {

constexpr double kStepTolerance = 1e-9; // steps

// Half a unit of the length's first digit.
double roundStep(double length) { return std::pow(10, std::floor(std::log10(length))) / 2; }

} // namespace

std::vector<std::vector<std::size_t>> groupsOf(const SimulateJob& job,
                                               const SimulatedShots& shots) {
  if (!shots.groups.empty()) return shots.groups;
  std::vector<std::vector<std::size_t>> pairs;
  std::vector<std::size_t> all = {0};
  for (std::size_t i = 1; i < job.cameras.size(); ++i) {
    pairs.push_back({i - 1, i});
    all.push_back(i);
  }
  if (job.kind == SimulatedKind::kConveyor) return pairs;
  return {all};
}

std::vector<std::size_t> absentFor(const SimulateJob& job, const SimulatedShots& shots,
                                   const std::vector<std::size_t>& group) {
  std::vector<std::size_t> absent;
  if (!shots.onlyGroups) return absent;
  for (std::size_t i = 0; i < job.cameras.size(); ++i) {
    if (std::find(group.begin(), group.end(), i) == group.end()) absent.push_back(i);
  }
  return absent;
}

double unitsPerPixel(const SimulateJob& job, const SimulatedRig& rig, double share) {
  double shortestFocal = rig.cameras.front().model.intrinsic.matrix[0];
  for (const SceneCamera& camera : rig.cameras) {
    shortestFocal = std::min(shortestFocal, camera.model.intrinsic.matrix[0]);
  }
  return share * job.height / shortestFocal;
}

double roundedUp(double length) {
  const double step = roundStep(length);
  return std::ceil(length / step - kStepTolerance) * step;
}

double roundedDown(double length) {
  const double step = roundStep(length);
  return std::floor(length / step + kStepTolerance) * step;
}

} // namespace velmorn::tool
