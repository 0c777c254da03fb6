// Cameras in a row over one large data-code board, none of which sees a square that another sees.
#ifndef VELMORN64_TESTS_TOOLS_DATA_CODE_RIG_H
#define VELMORN64_TESTS_TOOLS_DATA_CODE_RIG_H

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>
#include <opencv2/core.hpp>

#include "support/code_board_renderer.h"

namespace velmorn::tool {

class DataCodeRig {
 public:
  explicit DataCodeRig(int cameraCount, int shots = 2);

  int cameraCount() const { return static_cast<int>(cameras_.size()); }
  const CodeBoardSpec& board() const { return board_; }
  std::string id(int camera) const { return "cam" + std::to_string(camera); }
  std::string imageName(int camera, int shot) const;
  cv::Matx44d camFromBoard(int camera, int shot) const;
  cv::Matx44d camFromCam(int target, int source) const; // targetFromSource

  // Grid lines that the camera sees in a shot, with a margin of a square.
  cv::Range columnsSeen(int camera, int shot) const;

  // Writes a camera's file and images into the folder. An image without the board has the size of
  // the others.
  void writeCameraFile(const std::filesystem::path& folder, int camera) const;
  void writeImage(const std::filesystem::path& folder, int camera, int shot) const;
  void writeEmptyImage(const std::filesystem::path& folder, int camera, int shot) const;

  // The rig file.
  nlohmann::json rigFile() const;

 private:
  CodeBoardSpec board_;
  CodeBoardSymbols symbols_;
  std::vector<CameraModel> cameras_;
  std::vector<cv::Matx44d> camFromWorld_;
  std::vector<cv::Matx44d> worldFromBoard_; // per shot
};

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_DATA_CODE_RIG_H
