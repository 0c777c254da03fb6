// A rig over a data-code board whose corners the fake libraries hand out.
#ifndef VELMORN64_TESTS_DATACODE_DATA_CODE_RIG_H
#define VELMORN64_TESTS_DATACODE_DATA_CODE_RIG_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "datacode/fake_libraries.h"
#include "stitching/stitching_types.h"
#include "support/camera_model.h"
#include "velmorn64.h"

namespace velmorn {

// Arguments of the two entries.
struct DataCodeInputs {
  std::vector<std::string> camIDs;
  ImagePathMap paths;
  std::map<std::string, tagOzKCamIntrinsic> intrinsics;
  std::map<std::string, tagOzKCamDistortion> distortions;
  bool saveCornerImgs = false;
  int baseCamIdx = -1;
  int minCornerNum = 4;
};

// What an entry gave. The result starts out as `untouchedDataCodeResult`.
struct DataCodeOutcome {
  int status = 0;
  OzKStitchResult result{};
  std::string console;
};
DataCodeOutcome runDataCode(DataCodeInputs& inputs);
DataCodeOutcome runDataCodeBackup(DataCodeInputs& inputs);

// A result record with a pattern in every byte, and whether entries from `first` on still are that.
OzKStitchResult untouchedDataCodeResult();
bool isUntouchedFrom(const OzKStitchResult& result, int first);

// Cameras "P", "Q", "R", ... in a row over one board; each shot is a position of the board.
class DataCodeRig {
 public:
  // views[camera] has a letter per shot: '1' the camera finds its part of the board, '0' it does
  // not. Image files of noise are written to the folder.
  DataCodeRig(const std::vector<std::string>& views, const std::filesystem::path& folder);

  DataCodeInputs inputs() const;

  // What the libraries do, in the order in which the entries go through the images.
  std::vector<fake::Shot> script() const;

  // The camera's own part of the board in a shot, as the extractor hands it out.
  std::vector<fake::Corner> corners(int camera, int shot) const;

  cv::Matx44d camFromCam(int target, int source) const; // targetFromSource
  cv::Matx44d camFromBoard(int camera, int shot) const;

 private:
  std::vector<std::string> views_;
  CameraModel camera_;
  std::filesystem::path folder_;
};

} // namespace velmorn

#endif // VELMORN64_TESTS_DATACODE_DATA_CODE_RIG_H
