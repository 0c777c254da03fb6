// Thinning of clouds: one point per voxel.
#include "velmorn/voxel_grid.h"

#include <cmath>
#include <limits>

namespace velmorn::tool {

bool VoxelGrid::add(const CloudPoint& point) {
  Cell cell;
  for (int axis = 0; axis < 3; ++axis) {
    const double index = std::floor(static_cast<double>(point.position[axis]) / side_);
    const bool hasVoxel = index >= std::numeric_limits<std::int32_t>::min() &&
                          index <= std::numeric_limits<std::int32_t>::max();
    if (!hasVoxel) return false;
    cell[static_cast<std::size_t>(axis)] = static_cast<std::int32_t>(index);
  }
  Voxel& voxel = voxels_[cell];
  count(voxel, point.camera);
  voxel.position +=
      (cv::Vec3d(point.position) - voxel.position) / static_cast<double>(voxel.points);
  voxel.colour += (cv::Vec3f(point.colour) - voxel.colour) / static_cast<float>(voxel.points);
  return true;
}

void VoxelGrid::forEach(const std::function<void(const CloudPoint&)>& take) const {
  for (const auto& [cell, voxel] : voxels_) {
    CloudPoint point;
    point.position = cv::Vec3f(voxel.position);
    point.colour = cv::Vec3b(voxel.colour); // rounds
    point.camera = voxel.mostCamera;
    take(point);
  }
}

// Mixes the indices so that neighbours come far apart.
std::size_t VoxelGrid::CellHash::operator()(const Cell& cell) const {
  constexpr std::uint64_t kOddFactor = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio
  std::uint64_t hash = 0;
  for (const std::int32_t index : cell) {
    hash = (hash ^ static_cast<std::uint32_t>(index)) * kOddFactor;
    hash ^= hash >> 32;
  }
  return static_cast<std::size_t>(hash);
}

// One camera's points come in a row, so a count for the latest camera and one for the best are
// enough.
void VoxelGrid::count(Voxel& voxel, std::uint8_t camera) {
  if (voxel.points == 0 || voxel.latestCamera != camera) voxel.latestPoints = 0;
  voxel.latestCamera = camera;
  ++voxel.points;
  ++voxel.latestPoints;
  if (voxel.latestPoints <= voxel.mostPoints) return;
  voxel.mostPoints = voxel.latestPoints;
  voxel.mostCamera = camera;
}

} // namespace velmorn::tool
