// How well the clouds of cameras that see the same surfaces agree.
#include "velmorn/seam_check.h"

#include <algorithm>
#include <cmath>

#include "velmorn/depth_surface.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

constexpr double kCandidates = 50000;      // pixels of a camera that are looked at
constexpr std::size_t kMostPoints = 10000; // of one camera that are in another one's view
constexpr std::size_t kFewestPoints = 20;  // for a statement about a pair
constexpr double kReach = 10;              // sample spacings

using Points = std::vector<cv::Vec3d>;

struct OneWay {
  std::size_t inView = 0;
  std::vector<double> distances; // length unit
};

Points transformed(const cv::Matx44d& bFromA, const Points& pointsInA) {
  const cv::Matx33d R = bFromA.get_minor<3, 3>(0, 0);
  const cv::Vec3d T = translationOf(bFromA);
  Points pointsInB;
  pointsInB.reserve(pointsInA.size());
  for (const cv::Vec3d& point : pointsInA) pointsInB.push_back(R * point + T);
  return pointsInB;
}

// The samples on an even grid of pixels, in the base's frame.
Points candidatesOf(const SeamCamera& camera) {
  const cv::Mat& counts = camera.view.counts;
  const double pixels = static_cast<double>(counts.total());
  const int step = std::max(1, static_cast<int>(std::ceil(std::sqrt(pixels / kCandidates))));
  Points pointsInCam;
  for (int row = step / 2; row < counts.rows; row += step) {
    for (const DepthSample& sample : samplesOfRow(camera.view, row, step / 2, step)) {
      pointsInCam.push_back(sample.pointInCam);
    }
  }
  return transformed(camera.baseFromCam, pointsInCam);
}

OneWay compare(const Points& pointsInCam, const DepthSurface& surface) {
  const std::vector<DepthSurface::SeenPoint> seen = surface.seenOf(pointsInCam);
  const std::size_t step = std::max<std::size_t>(1, (seen.size() + kMostPoints - 1) / kMostPoints);
  OneWay result;
  for (std::size_t i = 0; i < seen.size(); i += step) {
    const std::optional<LocalPlane> plane = surface.planeAt(seen[i].pixel);
    if (!plane) continue;
    ++result.inView;
    const double distance = plane->distanceTo(seen[i].pointInCam);
    if (distance <= kReach * plane->spacing) result.distances.push_back(distance);
  }
  return result;
}

// The smallest value that at least the share of all is not above.
double quantile(std::vector<double>& values, double share) {
  const auto rank =
      static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(values.size())));
  const auto place = values.begin() + std::max<std::ptrdiff_t>(rank, 1) - 1;
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

Seam seamOf(std::size_t first, std::size_t second, const OneWay& there, const OneWay& back) {
  std::vector<double> distances = there.distances;
  distances.insert(distances.end(), back.distances.begin(), back.distances.end());
  Seam seam;
  seam.first = first;
  seam.second = second;
  seam.inView = there.inView + back.inView;
  seam.compared = distances.size();
  if (!seam.agrees()) return seam;
  seam.median = quantile(distances, 0.5);
  seam.percentile90 = quantile(distances, 0.9);
  return seam;
}

} // namespace

bool Seam::overlaps() const { return inView >= kFewestPoints; }

bool Seam::agrees() const { return compared >= kFewestPoints; }

std::vector<Seam> checkSeams(const std::vector<SeamCamera>& cameras) {
  const std::size_t number = cameras.size();
  std::vector<Points> pointsInBase;
  for (const SeamCamera& camera : cameras) pointsInBase.push_back(candidatesOf(camera));

  // One camera's surface at a time: each takes 16 bytes per pixel.
  std::vector<std::vector<OneWay>> onto(number, std::vector<OneWay>(number));
  for (std::size_t target = 0; target < number; ++target) {
    const DepthSurface surface(cameras[target].view);
    const cv::Matx44d camFromBase = inversePose(cameras[target].baseFromCam);
    for (std::size_t source = 0; source < number; ++source) {
      if (source == target) continue;
      onto[target][source] = compare(transformed(camFromBase, pointsInBase[source]), surface);
    }
  }

  std::vector<Seam> seams;
  for (std::size_t first = 0; first < number; ++first) {
    for (std::size_t second = first + 1; second < number; ++second) {
      seams.push_back(seamOf(first, second, onto[second][first], onto[first][second]));
    }
  }
  return seams;
}

} // namespace velmorn::tool
