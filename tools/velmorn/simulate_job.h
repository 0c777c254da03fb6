// Simulation jobs: what `velmorn simulate` is to render.
#ifndef VELMORN64_TOOLS_SIMULATE_JOB_H
#define VELMORN64_TOOLS_SIMULATE_JOB_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

enum class SimulatedKind { kConveyor, kPlatform };

struct SimulatedLens {
  cv::Size imageSize{1280, 960};
  double fieldOfView = 65;                    // degrees across the image's width
  std::optional<double> focal;                // pixels; takes the place of the field of view
  std::vector<double> distortion{0, 0, 0, 0}; // OpenCV's order, 4, 5, 8 or 12
};

// Where a camera stands, in the world: x along the belt or table, y across, z up, the ground's
// middle at the origin. Without tilt and turn it looks straight down, image x along world x.
struct SimulatedPlace {
  cv::Vec3d position;    // length unit
  double tiltAlong = 0;  // degrees, turns the line of sight towards world x
  double tiltAcross = 0; // degrees, turns it towards world y
  double turn = 0;       // degrees, about the line of sight
};

struct SimulatedCamera {
  SimulatedLens lens;
  std::optional<SimulatedPlace> place; // nothing: where the kind of rig has it
};

// Board positions. The cameras of one group see the board together, in `shots` positions.
struct SimulatedShots {
  int shots = 0;                                // per group
  std::vector<std::vector<std::size_t>> groups; // camera indices; empty: the kind's own
  bool onlyGroups = false; // images of cameras outside of the group do not have the board
};

struct SimulatedPlainBoard {
  cv::Size corners{9, 6};       // inner ones per row and column
  std::optional<double> square; // length unit; nothing: as large as the images need it
  SimulatedShots shots;
};

struct SimulatedCodeBoard {
  std::optional<cv::Size> squares; // nothing: as many as cover what the cameras see
  std::optional<double> square;    // as above
  SimulatedShots shots;            // groups are only used with onlyGroups
};

struct SimulatedDepth {
  double step = 1;  // length units per count
  double noise = 0; // standard deviation, length units
  double holes = 0; // part of the pixels, 0 to 1
  double edge = 0;  // differences of depth that leave holes, length units; 0: none do
};

struct SimulateJob {
  SimulatedKind kind = SimulatedKind::kConveyor;
  std::string unit = "mm";
  int seed = 1;
  std::optional<std::size_t> base; // index of the base camera
  double height = 0;               // of the cameras above the ground, length unit
  std::optional<double> spacing;   // between neighbouring cameras, length unit
  double noise = 0;                // of images, grey levels
  double blur = 0;                 // of board images, pixels
  SimulatedDepth depth;
  SimulatedPlainBoard plain;
  SimulatedCodeBoard code;
  std::vector<SimulatedCamera> cameras; // 2 to 10
};

// What the command line says besides the file; it takes precedence.
struct SimulateOverrides {
  std::optional<std::size_t> cameras;
  std::optional<int> seed;
};

// Reads a job file; an empty path stands for one without keys. Throws ToolError that names the file
// and the key for anything that cannot be used.
SimulateJob readSimulateJob(const std::string& path, const SimulateOverrides& overrides);

// "cam1" for index 0.
std::string simulatedId(std::size_t camera);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_JOB_H
