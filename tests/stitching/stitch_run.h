// A stitching run of a synthetic rig: its inputs, ready to be spoilt one by one, and its outcome.
#ifndef VELMORN64_TESTS_STITCHING_STITCH_RUN_H
#define VELMORN64_TESTS_STITCHING_STITCH_RUN_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "stitching/stitching_types.h"
#include "support/synthetic_rig.h"
#include "velmorn64.h"

namespace velmorn {

struct StitchInputs {
  std::vector<std::string> camIDs;
  ImagePathMap paths;
  std::map<std::string, tagOzKCamIntrinsic> intrinsics;
  std::map<std::string, tagOzKCamDistortion> distortions;
  tagOzKSize patternSize{9, 6};
  float squareSize = 25;
  int minImages = 3;
  bool saveCornerImages = false;
  int baseCamIdx = -1;
};

// Inputs of cameras "cam0", "cam1", ... with good parameters and three image files each that are
// not there: enough for everything that is decided before an image is read.
StitchInputs inputsWithoutImages(int cameraCount);

// Inputs of a rig with its images, written to the folder.
StitchInputs inputsWithImages(const SyntheticRig& rig, const std::filesystem::path& folder,
                              const ImageEffects& effects = {0.6, 1});

// A rig with three board positions per group, small images of a small board.
SyntheticRig quickRig(int cameraCount, const ViewGroups& groups,
                      const std::vector<std::string>& ids = {});

// What the driver gave. The maps and the base start out filled with something else.
struct DriverOutcome {
  int status = 0;
  MatrixMap rotations, translations;
  ResidualMap residuals;
  int baseCamIdx = 0; // in: as requested
  std::string console;
};
DriverOutcome runDriver(const StitchInputs& inputs);

// What the exported function gave. The result starts out as `untouchedResult`.
struct EntryOutcome {
  int status = 0;
  OzKStitchResult result{};
  std::string console;
};
EntryOutcome runEntry(const StitchInputs& inputs);

// A result record with a pattern in every byte, and whether a record still is that.
OzKStitchResult untouchedResult();
bool isUntouched(const OzKStitchResult& result);

// The console's lines that do not come from the corner search.
std::string withoutCornerSearch(const std::string& console);

} // namespace velmorn

#endif // VELMORN64_TESTS_STITCHING_STITCH_RUN_H
