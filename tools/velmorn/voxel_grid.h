// Thinning of clouds: one point per voxel.
#ifndef VELMORN64_TOOLS_VOXEL_GRID_H
#define VELMORN64_TOOLS_VOXEL_GRID_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>

#include "velmorn/camera_cloud.h"

namespace velmorn::tool {

// Voxels are cubes with a corner in the frame's origin. One that holds points keeps their mean, the
// mean of their colours and the camera of most of them, of equals the first. Memory goes with the
// number of voxels that hold points, never with the size of the space.
class VoxelGrid {
 public:
  // side  above 0, length unit
  explicit VoxelGrid(double side) : side_(side) {}

  // Takes the point in. False when it has no voxel: it is more than 2^31 sides away from the
  // origin, where single precision has less than one number per voxel, so that there is nothing to
  // thin. The points of one camera have to come in a row.
  bool add(const CloudPoint& point);

  void forEach(const std::function<void(const CloudPoint&)>& take) const;

 private:
  using Cell = std::array<std::int32_t, 3>;

  struct CellHash {
    std::size_t operator()(const Cell& cell) const;
  };

  struct Voxel {
    cv::Vec3d position; // mean
    cv::Vec3f colour;   // mean
    std::uint32_t points = 0;
    std::uint32_t mostPoints = 0;   // of one camera
    std::uint32_t latestPoints = 0; // of the camera that came last
    std::uint8_t mostCamera = 0;
    std::uint8_t latestCamera = 0;
  };

  static void count(Voxel& voxel, std::uint8_t camera);

  double side_;
  std::unordered_map<Cell, Voxel, CellHash> voxels_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_VOXEL_GRID_H
