// The images of one simulated camera.
#ifndef VELMORN64_TOOLS_SIMULATE_IMAGES_H
#define VELMORN64_TOOLS_SIMULATE_IMAGES_H

#include <cstddef>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/code_board.h"
#include "velmorn/plane_renderer.h"
#include "velmorn/simulate_job.h"
#include "velmorn/simulate_rig.h"
#include "velmorn/simulate_shots.h"
#include "velmorn/simulate_view.h"

namespace velmorn::tool {

struct SimulatedBoards {
  PlainBoard plain;
  std::vector<BoardPosition> plainShots;
  CodeBoardSpec code;
  std::vector<BoardPosition> codeShots;
};

// The job's boards and their positions. Throws ToolError.
SimulatedBoards simulatedBoards(const SimulateJob& job, const SimulatedRig& rig);

// Renders the images of one camera. Everything given has to outlive it.
class SimulatedImages {
 public:
  SimulatedImages(const SimulateJob& job, const SimulatedRig& rig, const SimulatedBoards& boards,
                  const CodeBoardSymbols& symbols, std::size_t camera);

  cv::Mat plainBoard(std::size_t shot) const; // 8-bit grey, before the empty belt or table
  cv::Mat codeBoard(std::size_t shot) const;  // likewise
  cv::Mat depth() const;                      // 16 bits, counts of the job's step
  cv::Mat color() const;                      // 8-bit BGR

 private:
  cv::Mat boardImage(const BoardPosition& position, const PlanePicture& picture, double square,
                     std::uint64_t seed) const;

  const SimulateJob& job_;
  const SimulatedRig& rig_;
  const SimulatedBoards& boards_;
  const CodeBoardSymbols& symbols_;
  std::size_t index_;
  const SceneCamera& camera_;
  PlaneRenderer renderer_;
  cv::Mat_<float> background_; // grey levels
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_IMAGES_H
