// `velmorn intrinsics`: the camera file of one camera from images of the board.
#include "velmorn/intrinsics_command.h"

#include <iomanip>
#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/calibration.h"
#include "velmorn/grey_image.h"
#include "velmorn/image_list.h"
#include "velmorn/progress.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

void printSummary(const IntrinsicsOptions& options, const BoardViews& views,
                  const Calibration& found) {
  const cv::Mat& matrix = found.cameraMatrix;
  std::cout << "images      " << usableCount(views) << " of " << views.views.size() << " usable, "
            << sizeText(found.imageSize) << " pixels\n"
            << std::fixed << std::setprecision(3) << "rms error   " << found.reprojectionRms
            << " pixels\n"
            << "fx, fy      " << matrix.at<double>(0, 0) << ", " << matrix.at<double>(1, 1) << '\n'
            << "cx, cy      " << matrix.at<double>(0, 2) << ", " << matrix.at<double>(1, 2) << '\n'
            << "distortion ";
  for (int i = 0; i < static_cast<int>(found.distortion.total()); ++i) {
    std::cout << ' ' << std::setprecision(5) << found.distortion.at<double>(i);
  }
  std::cout << "\nwritten to  " << oneLine(options.output) << '\n';
}

} // namespace

void runIntrinsics(const IntrinsicsOptions& options) {
  const std::vector<std::string> paths = expandImages(options.images, "");
  requireWritable(options.output);

  std::size_t number = 0;
  const BoardViews views = findBoardViews(paths, options.board, [&](const BoardView& view) {
    printProgress(++number, paths.size(), fileName(view.path),
                  view.problem.empty() ? "board found" : view.problem);
  });
  const Calibration found = calibrate(views, options.board, options.square);
  writeFileAtomically(options.output, cameraFileText(found));
  printSummary(options, views, found);
}

} // namespace velmorn::tool
