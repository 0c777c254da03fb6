// The surface that a depth image shows, as small planes.
#include "velmorn/depth_surface.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include <opencv2/calib3d.hpp>

#include "velmorn/lens.h"

namespace velmorn::tool {
namespace {

constexpr int kRadius = 2;           // of the neighbourhood, pixels
constexpr int kFewestSamples = 20;   // of the 25: those that are there surround the middle
constexpr double kRoughest = 3;      // sample spacings
constexpr double kMostPixelsOff = 3; // rounding, and pixels that the lens shows wider

struct Neighbour {
  cv::Point2d ray;
  double z = 0;
};

using Neighbourhood = std::vector<Neighbour>;

// On a plane, 1/z is a x + b y + c of the line of sight (x, y), and a, b, c is its normal as in
// LocalPlane. Least squares, with the lines of sight counted from the middle one.
cv::Vec3d fittedNormal(const Neighbourhood& neighbours, const cv::Point2d& middle) {
  cv::Matx33d squares = cv::Matx33d::zeros();
  cv::Vec3d sums;
  for (const Neighbour& neighbour : neighbours) {
    const cv::Vec3d place(neighbour.ray.x - middle.x, neighbour.ray.y - middle.y, 1);
    squares += place * place.t();
    sums += place / neighbour.z;
  }
  const cv::Vec3d fit = squares.inv() * sums;
  return {fit[0], fit[1], fit[2] - fit[0] * middle.x - fit[1] * middle.y};
}

// Root mean square of the samples' distances to the plane, along their lines of sight.
double roughness(const LocalPlane& plane, const Neighbourhood& neighbours) {
  double sum = 0;
  for (const Neighbour& neighbour : neighbours) {
    const double planeZ = 1 / plane.normal.dot({neighbour.ray.x, neighbour.ray.y, 1});
    sum += (planeZ - neighbour.z) * (planeZ - neighbour.z);
  }
  return std::sqrt(sum / static_cast<double>(neighbours.size()));
}

} // namespace

double LocalPlane::distanceTo(const cv::Vec3d& pointInCam) const {
  return std::abs(normal.dot(pointInCam) - 1) / cv::norm(normal);
}

DepthSurface::DepthSurface(const DepthView& view)
    : view_(view), rays_(view.counts.size(), CV_64FC2) {
  std::vector<cv::Point2d> pixels(static_cast<std::size_t>(rays_.cols));
  for (int row = 0; row < rays_.rows; ++row) {
    for (int column = 0; column < rays_.cols; ++column) {
      pixels[static_cast<std::size_t>(column)] = cv::Point2d(column, row);
    }
    const std::vector<cv::Point2d> rays = raysThrough(view.model, pixels);
    std::copy(rays.begin(), rays.end(), rays_.ptr<cv::Point2d>(row));
  }
}

std::vector<DepthSurface::SeenPoint> DepthSurface::seenOf(
    const std::vector<cv::Vec3d>& pointsInCam) const {
  std::vector<cv::Vec3d> inFront;
  for (const cv::Vec3d& point : pointsInCam) {
    if (point[2] > 0) inFront.push_back(point);
  }
  if (inFront.empty()) return {};
  const cv::Mat distortion(1, 12, CV_64FC1, const_cast<double*>(view_.model.distortion.coeffs));
  std::vector<cv::Point2d> places;
  cv::projectPoints(inFront, cv::Vec3d(), cv::Vec3d(), cv::Matx33d(view_.model.intrinsic.matrix),
                    distortion, places);
  std::vector<SeenPoint> seen;
  for (std::size_t i = 0; i < inFront.size(); ++i) {
    const std::optional<cv::Point> pixel = pixelAt(places[i]);
    if (pixel && isSeenThrough(*pixel, inFront[i])) seen.push_back({inFront[i], *pixel});
  }
  return seen;
}

std::optional<LocalPlane> DepthSurface::planeAt(cv::Point pixel) const {
  const cv::Rect inner(kRadius, kRadius, rays_.cols - 2 * kRadius, rays_.rows - 2 * kRadius);
  if (!inner.contains(pixel) || view_.counts.at<std::uint16_t>(pixel) == 0) return std::nullopt;
  Neighbourhood neighbours;
  for (int row = pixel.y - kRadius; row <= pixel.y + kRadius; ++row) {
    for (int column = pixel.x - kRadius; column <= pixel.x + kRadius; ++column) {
      const std::uint16_t count = view_.counts.at<std::uint16_t>(row, column);
      if (count != 0)
        neighbours.push_back({rays_.at<cv::Point2d>(row, column), count * view_.unit});
    }
  }
  if (neighbours.size() < kFewestSamples) return std::nullopt;
  LocalPlane plane;
  plane.normal = fittedNormal(neighbours, rays_.at<cv::Point2d>(pixel));
  plane.spacing = pixelSide() * view_.counts.at<std::uint16_t>(pixel) * view_.unit;
  const bool isSmooth = roughness(plane, neighbours) <= kRoughest * plane.spacing;
  return isSmooth ? std::optional<LocalPlane>(plane) : std::nullopt; // rough, too, when NaN
}

std::optional<cv::Point> DepthSurface::pixelAt(const cv::Point2d& place) const {
  const bool isInside = place.x >= 0 && place.y >= 0 && place.x <= rays_.cols - 1 &&
                        place.y <= rays_.rows - 1; // false for NaN, too
  if (!isInside) return std::nullopt;
  return cv::Point(cvRound(place.x), cvRound(place.y));
}

// A lens model that bends far lines of sight back into the image shows what the lens does not.
bool DepthSurface::isSeenThrough(cv::Point pixel, const cv::Vec3d& pointInCam) const {
  const cv::Point2d ray(pointInCam[0] / pointInCam[2], pointInCam[1] / pointInCam[2]);
  return cv::norm(ray - rays_.at<cv::Point2d>(pixel)) <= kMostPixelsOff * pixelSide();
}

// How far lines of sight of neighbouring pixels are apart at a distance of 1, in the image's
// middle.
double DepthSurface::pixelSide() const {
  const double* m = view_.model.intrinsic.matrix;
  return (1 / m[0] + 1 / m[4]) / 2;
}

} // namespace velmorn::tool
