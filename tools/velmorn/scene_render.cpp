// Images that a camera takes of a scene.
#include "velmorn/scene_render.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "velmorn/scene_shading.h"

namespace velmorn::tool {
namespace {

// True depths, length units, 0 where nothing is seen.
cv::Mat_<double> trueDepths(const Scene& scene, const SceneCamera& camera) {
  const SceneGeometry geometry(scene);
  cv::Mat_<double> depths(camera.model.imageSize, 0.0);
  std::vector<cv::Point2d> pixels(static_cast<std::size_t>(depths.cols));
  for (int y = 0; y < depths.rows; ++y) {
    for (int x = 0; x < depths.cols; ++x) pixels[static_cast<std::size_t>(x)] = {x * 1.0, y * 1.0};
    double* depth = depths[y];
    for (const SceneRay& ray : raysOf(camera, pixels)) {
      const auto hit = geometry.firstHit(ray);
      if (hit) *depth = hit->s;
      ++depth;
    }
  }
  return depths;
}

bool isAtEdge(const cv::Mat_<double>& depths, int x, int y, double edgeHeight) {
  const double here = depths(y, x);
  const auto differs = [&](int otherX, int otherY) {
    const bool inImage = otherX >= 0 && otherX < depths.cols && otherY >= 0 && otherY < depths.rows;
    return inImage && std::abs(depths(otherY, otherX) - here) > edgeHeight;
  };
  return differs(x - 1, y) || differs(x + 1, y) || differs(x, y - 1) || differs(x, y + 1);
}

std::uint16_t countOf(double depth, double step) {
  const double count = std::round(depth / step);
  const bool hasCount = count >= 1 && count <= std::numeric_limits<std::uint16_t>::max();
  return hasCount ? static_cast<std::uint16_t>(count) : std::uint16_t{0};
}

// The mean over the pixel's rays; a pixel reaches half a pixel to every side of its centre.
cv::Vec3d pixelColor(const Scene& scene, const SceneGeometry& geometry, const SceneRay* rays,
                     std::size_t count) {
  cv::Vec3d sum(0, 0, 0);
  for (std::size_t i = 0; i < count; ++i) sum += seenColor(scene, geometry, rays[i]);
  return sum * (1.0 / static_cast<double>(count));
}

// The image points of a row's rays, pixel by pixel.
std::vector<cv::Point2d> subpixelsOfRow(int y, int columns, int subpixels) {
  const auto offset = [subpixels](int i) { return (i + 0.5) / subpixels - 0.5; };
  std::vector<cv::Point2d> points;
  for (int x = 0; x < columns; ++x) {
    for (int i = 0; i < subpixels * subpixels; ++i) {
      points.emplace_back(x + offset(i % subpixels), y + offset(i / subpixels));
    }
  }
  return points;
}

} // namespace

cv::Mat renderDepth(const Scene& scene, const SceneCamera& camera, const DepthEffects& effects) {
  const cv::Mat_<double> depths = trueDepths(scene, camera);
  // Both are always drawn, so that one effect does not change where the other one strikes.
  cv::RNG random(effects.seed);
  cv::Mat_<float> noise(depths.size()), chance(depths.size());
  random.fill(noise, cv::RNG::NORMAL, 0, 1);
  random.fill(chance, cv::RNG::UNIFORM, 0, 1);

  cv::Mat_<std::uint16_t> counts(depths.size(), std::uint16_t{0});
  for (int y = 0; y < depths.rows; ++y) {
    for (int x = 0; x < depths.cols; ++x) {
      if (depths(y, x) == 0 || static_cast<double>(chance(y, x)) < effects.holeShare) continue;
      if (effects.edgeHeight > 0 && isAtEdge(depths, x, y, effects.edgeHeight)) continue;
      const double error = static_cast<double>(noise(y, x)) * effects.noiseSigma;
      counts(y, x) = countOf(depths(y, x) + error, effects.step);
    }
  }
  return std::move(counts);
}

cv::Mat renderColor(const Scene& scene, const SceneCamera& camera, const ColorEffects& effects) {
  const SceneGeometry geometry(scene);
  const std::size_t perPixel =
      static_cast<std::size_t>(effects.subpixels) * static_cast<std::size_t>(effects.subpixels);
  cv::Mat_<cv::Vec3f> colors(camera.model.imageSize);
  for (int y = 0; y < colors.rows; ++y) {
    const std::vector<SceneRay> rays =
        raysOf(camera, subpixelsOfRow(y, colors.cols, effects.subpixels));
    for (int x = 0; x < colors.cols; ++x) {
      const SceneRay* const first = rays.data() + static_cast<std::size_t>(x) * perPixel;
      colors(y, x) = pixelColor(scene, geometry, first, perPixel);
    }
  }
  if (effects.noiseSigma > 0) {
    cv::Mat_<cv::Vec3f> noise(colors.size());
    cv::RNG(effects.seed).fill(noise, cv::RNG::NORMAL, 0, effects.noiseSigma);
    colors += noise;
  }
  cv::Mat image;
  colors.convertTo(image, CV_8U);
  return image;
}

} // namespace velmorn::tool
