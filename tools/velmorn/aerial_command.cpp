// `velmorn aerial`: what depth cameras see, from above.
#include "velmorn/aerial_command.h"

#include <iomanip>
#include <iostream>
#include <numeric>

#include "velmorn/aerial_images.h"
#include "velmorn/aerial_job.h"
#include "velmorn/aerial_view.h"
#include "velmorn/atomic_file.h"
#include "velmorn/depth_legend.h"
#include "velmorn/image_file.h"
#include "velmorn/map_picture.h"
#include "velmorn/progress.h"
#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

void requireDrawable(const AerialOptions& options, const AerialJob& job) {
  try {
    aerialGrid(job);
  } catch (const ToolError& error) {
    throw ToolError(options.job + ": " + error.what());
  }
}

std::size_t coveredCells(const AerialView& view) {
  return std::accumulate(view.cellsOf.begin(), view.cellsOf.end(), std::size_t{0});
}

void printCells(std::size_t cells, const AerialView& view) {
  const double all = static_cast<double>(view.depth.total());
  std::cout << counted(cells, "cell") << ", " << std::fixed << std::setprecision(2)
            << 100 * static_cast<double>(cells) / all << " %\n";
}

void printDepths(const AerialJob& job, const AerialView& view) {
  double nearest = 0;
  double farthest = 0;
  cv::minMaxLoc(view.depth, &nearest, &farthest, nullptr, nullptr, view.depth != 0);
  std::cout << "depths      " << shortNumberText(nearest * job.depthUnit) << " to "
            << shortNumberText(farthest * job.depthUnit) << '\n';
}

void printSummary(const AerialOptions& options, const AerialJob& job, const AerialView& view,
                  const std::string& legendPath) {
  std::cout << "grid        " << gridText(view.grid) << '\n' << "covered     ";
  printCells(coveredCells(view), view);
  for (std::size_t i = 0; i < job.cameras.size(); ++i) {
    std::cout << "  by " << inQuotes(job.cameras[i].id) << ": ";
    printCells(view.cellsOf[i], view);
  }
  if (coveredCells(view) > 0) printDepths(job, view);
  std::cout << "written to  " << oneLine(options.output) << '\n'
            << "legend      " << oneLine(legendPath) << '\n';
}

std::optional<ColourBar> legendOf(const AerialJob& job, const AerialView& view) {
  if (job.hasColour()) return std::nullopt;
  return depthLegend(view.depth, view.picture, job.depthUnit);
}

} // namespace

void runAerial(const AerialOptions& options) {
  const AerialJob job = readAerialJob(options.job);
  requireDrawable(options, job);
  const std::string legendPath = neighbourImage(options.output, "-legend.png");
  requireWritable(options.output);
  requireWritable(legendPath);
  const AerialImages images = readAerialImages(job);
  const AerialView view = renderAerialView(job, images);
  if (coveredCells(view) == 0) {
    printWarning("no depth sample falls into the region, so the picture is black");
  }
  const cv::Mat legend = drawMapPicture(view.picture, view.grid, legendOf(job, view));
  const std::string picture = imageFileText(options.output, view.picture);
  writeFileAtomically(legendPath, imageFileText(legendPath, legend));
  writeFileAtomically(options.output, picture);
  printSummary(options, job, view, legendPath);
}

} // namespace velmorn::tool
