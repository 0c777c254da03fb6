// What a result file says about its run, for the commands that explain and show it.
#ifndef VELMORN64_TOOLS_STITCH_RECORD_H
#define VELMORN64_TOOLS_STITCH_RECORD_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/camera_file.h"
#include "velmorn/shot_record.h"

namespace velmorn::tool {

struct IntrinsicsRecord {
  std::string file; // path; relative ones are seen from the working directory
  CameraModel model;
};

struct CameraRecord {
  std::string id;
  std::string parent; // empty for the base and for a camera without a place
  bool isBase = false;
  int depth = 0;                          // links to the base
  std::optional<cv::Matx44d> baseFromCam; // nothing for a camera that was not linked
  std::optional<double> residual;         // length unit
  std::size_t imagesFound = 0;
  std::size_t imagesTotal = 0;
  std::size_t imagesShared = 0;               // with the parent
  std::optional<IntrinsicsRecord> intrinsics; // files of versions before 0.5 have none
  cv::Size imageSize;                         // of its images; empty when unknown
  std::vector<ShotRecord> shots;              // likewise
};

struct StitchRecord {
  bool hasDataCodes = false;
  cv::Size board;     // inner corners of a plain board
  double square = 0;  // side of a square, length unit; 0 when unknown
  int minImages = 1;  // board positions that link two cameras
  std::string base;   // id; empty when the run failed before one was chosen
  std::string error;  // why the run failed; empty for one that did not
  std::string folder; // of the file
  std::vector<CameraRecord> cameras;
};

// Reads a result file. Paths in it are relative to its folder and come out as seen from the working
// directory. Throws ToolError that names the file for one that no run wrote: a number that is not
// finite, a pose that is no rigid transform, lists that do not fit each other.
StitchRecord readStitchRecord(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_RECORD_H
