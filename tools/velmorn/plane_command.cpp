// `velmorn plane`: the reference plane that one camera sees.
#include "velmorn/plane_command.h"

#include <iomanip>
#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/depth_image.h"
#include "velmorn/extrinsic_file.h"
#include "velmorn/json_text.h"
#include "velmorn/lens.h"
#include "velmorn/point_input.h"
#include "velmorn/reference_plane.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

PointCloud readPoints(const PlaneOptions& options) {
  if (pointFormatOf(options.input) != PointFormat::kDepthImage) {
    return readPointCloud(options.input);
  }
  const CameraModel camera = readCameraFile(options.intrinsics);
  const cv::Mat depth = readDepthImage(options.input);
  warnAboutImageSize(camera, options.intrinsics, depth.size());
  return pointsFromDepth(depth, camera, options.depthScale);
}

ReferencePlane fitTo(PointCloud& cloud, const PlaneOptions& options) {
  try {
    return fitReferencePlane(cloud, options.threshold);
  } catch (const ToolError& error) {
    throw ToolError(options.input + ": " + error.what());
  }
}

double inlierRatio(const ReferencePlane& plane, const PointCloud& cloud) {
  return static_cast<double>(plane.inliers) / static_cast<double>(cloud.points.size());
}

std::string resultText(const PlaneOptions& options, const PointCloud& cloud,
                       const ReferencePlane& plane) {
  nlohmann::ordered_json file = extrinsicJson({"planeFromCam", plane.planeFromCam});
  file["plane"] = planeJson(plane.model);
  file["input"] = options.input;
  file["threshold"] = options.threshold;
  file["pointsUsed"] = cloud.points.size();
  file["pointsSkipped"] = cloud.skipped;
  file["inliers"] = plane.inliers;
  file["inlierRatio"] = inlierRatio(plane, cloud);
  file["meanDistance"] = plane.meanDistance;
  return fileText(file);
}

void printSummary(const PlaneOptions& options, const PointCloud& cloud,
                  const ReferencePlane& plane) {
  const cv::Vec4d& c = plane.model.coefficients;
  const cv::Vec3d& point = plane.model.point;
  std::cout << "points         " << cloud.points.size() << " used, " << cloud.skipped
            << " skipped\n"
            << std::fixed << std::setprecision(2) << "inliers        "
            << 100 * inlierRatio(plane, cloud) << " %\n"
            << std::setprecision(4) << "mean distance  " << plane.meanDistance << '\n'
            << std::setprecision(6) << "a, b, c, d     " << c[0] + 0 << ", " << c[1] + 0 << ", "
            << c[2] + 0 << ", " << std::setprecision(4) << c[3] << '\n'
            << "origin         " << point[0] << ", " << point[1] << ", " << point[2] << '\n'
            << "written to     " << oneLine(options.output) << '\n';
}

} // namespace

void runPlane(const PlaneOptions& options) {
  requireWritable(options.output);
  PointCloud cloud = readPoints(options);
  const ReferencePlane plane = fitTo(cloud, options);
  writeFileAtomically(options.output, resultText(options, cloud, plane));
  printSummary(options, cloud, plane);
}

} // namespace velmorn::tool
