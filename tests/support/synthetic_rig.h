// Rigs of cameras around one board, with the truth about every pose.
#ifndef VELMORN64_TESTS_SUPPORT_SYNTHETIC_RIG_H
#define VELMORN64_TESTS_SUPPORT_SYNTHETIC_RIG_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "stitching/stitching_types.h"
#include "support/board_renderer.h"
#include "velmorn64.h"

namespace velmorn {

// Which cameras see the board together, one list of camera indices per group. Cameras of different
// groups share no board position.
using ViewGroups = std::vector<std::vector<int>>;

ViewGroups rowGroups(int cameraCount);     // every camera sees every board position
ViewGroups chainGroups(int cameraCount);   // only neighbours i, i + 1 share positions
ViewGroups diamondGroups(int cameraCount); // the first and the last each share with all between

// The defaults make the board fill most of the picture, which keeps its squares wider than the
// window of the sub-pixel refinement; smaller squares let it wander off.
struct RigOptions {
  int cameraCount = 2;          // 2 to 10
  ViewGroups groups = {{0, 1}}; // a camera in no group never sees the board
  int shotsPerGroup = 12;       // board positions, varied in place and tilt
  BoardSpec board;
  cv::Size imageSize{640, 480};
  double focal = 512;    // pixels
  double distance = 400; // from the cameras to the board, length unit
  bool distorted = true; // lens distortion
  std::uint64_t seed = 1;
  std::vector<std::string> ids; // "cam0", "cam1", ... unless given
};

// One board position.
struct Shot {
  cv::Matx44d worldFromBoard;
  std::vector<int> viewers; // indices of the cameras that see the whole board
};

struct SyntheticRig {
  BoardSpec board;
  std::vector<std::string> ids;
  std::vector<CameraModel> cameras;
  std::vector<cv::Matx44d> camFromWorld;
  std::vector<Shot> shots;

  bool sees(int camera, int shot) const;
  cv::Matx44d camFromBoard(int camera, int shot) const;
  cv::Matx44d camFromCam(int target, int source) const; // targetFromSource

  // The camera parameters in the forms of the public functions and of the inner ones.
  std::map<std::string, tagOzKCamIntrinsic> intrinsicRecords() const;
  std::map<std::string, tagOzKCamDistortion> distortionRecords() const;
  MatrixMap intrinsicMatrices() const;
  MatrixMap distortionMatrices() const;

  // Corners without images: the truth plus gaussian noise, pixels. A shot that a camera does not
  // see has an empty list.
  CornerMap cornerMap(double noiseSigma, std::uint64_t seed = 1) const;

  // Writes one PNG per camera and shot it sees, and one without a board per camera that stands for
  // all its other shots. Effects' seed is varied per image.
  ImagePathMap writeImages(const std::filesystem::path& folder, const ImageEffects& effects) const;
};

// Cameras on an arc around the board, each with a distance, height and roll of its own. Throws when
// no board position can be found that a group's cameras all see.
SyntheticRig makeRig(const RigOptions& options);

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_SYNTHETIC_RIG_H
