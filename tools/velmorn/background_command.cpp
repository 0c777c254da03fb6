// `velmorn background`: the height map of an empty scene.
#include "velmorn/background_command.h"

#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/depth_background.h"
#include "velmorn/height_picture.h"
#include "velmorn/image_file.h"
#include "velmorn/map_picture.h"
#include "velmorn/point_input.h"
#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

BackgroundRequest requestOf(const BackgroundOptions& options, const PointCloud& cloud) {
  if (cloud.points.empty()) {
    throw ToolError(cloud.skipped == 0 ? "no points" : "no point is finite");
  }
  BackgroundRequest request;
  request.region = options.region ? *options.region : boundingRegion(cloud);
  request.cell = options.cell;
  request.keepHighest = options.keepHighest;
  request.minPoints = options.minPoints;
  return request;
}

std::string regionText(const tagOzKRect2Df32& region) {
  std::string text;
  for (const float edge : {region.x1, region.y1, region.x2, region.y2}) {
    text += (text.empty() ? "" : ", ") + shortNumberText(static_cast<double>(edge));
  }
  return text;
}

void printSummary(const BackgroundOptions& options, const PointCloud& cloud,
                  const tagOzKRect2Df32& region, const DepthBackground& background,
                  const HeightRange& range, const std::string& viewPath) {
  std::cout << "points      " << cloud.points.size() << " used, " << cloud.skipped << " skipped, "
            << pointsIn(cloud, region) << " in the region\n"
            << "region      " << regionText(region) << '\n'
            << "grid        " << gridText(background.grid) << '\n'
            << "z           " << heightText(range.lowest, range) << " to "
            << heightText(range.highest, range) << '\n'
            << "written to  " << oneLine(options.output) << '\n'
            << "view        " << oneLine(viewPath) << '\n';
}

DepthBackground buildNamingTheFile(const BackgroundOptions& options, PointCloud& cloud,
                                   BackgroundRequest& request) {
  try {
    request = requestOf(options, cloud);
    return buildBackground(cloud, request);
  } catch (const ToolError& error) {
    throw ToolError(options.input + ": " + error.what());
  }
}

} // namespace

void runBackground(const BackgroundOptions& options) {
  const std::string viewPath = neighbourImage(options.output, "-view.png");
  requireWritable(options.output);
  requireWritable(viewPath);
  PointCloud cloud = readPointCloud(options.input);
  BackgroundRequest request;
  const DepthBackground background = buildNamingTheFile(options, cloud, request);
  const HeightRange range = heightRangeOf(background.heights);
  const cv::Mat view = drawMapPicture(heightColours(background.heights, range), background.grid,
                                      heightLegend(range));
  const std::string heights = imageFileText(options.output, background.heights);
  writeFileAtomically(viewPath, imageFileText(viewPath, view));
  writeFileAtomically(options.output, heights);
  printSummary(options, cloud, request.region, background, range, viewPath);
}

} // namespace velmorn::tool
