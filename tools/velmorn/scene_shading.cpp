// Colours of a scene's surfaces.
#include "velmorn/scene_shading.h"

#include <algorithm>
#include <cmath>

namespace velmorn::tool {
namespace {

// A ray to the light starts this far off its surface, so that rounding does not put it inside.
constexpr double kOffSurface = 1e-6; // length unit

cv::Vec3d beltColor(const SceneBelt& belt, double x) {
  if (belt.seamSpacing <= 0) return belt.color;
  const double fromSeam = std::abs(x - belt.seamSpacing * std::round(x / belt.seamSpacing));
  return fromSeam <= belt.seamWidth / 2 ? belt.seamColor : belt.color;
}

cv::Vec3d boxColor(const SceneBox& box, const cv::Vec3d& place) {
  const bool onTape = box.tapeWidth > 0 && std::abs(place[1]) <= box.tapeWidth / 2;
  return onTape ? box.tapeColor : box.color;
}

double brightness(const Scene& scene, const SceneGeometry& geometry, const cv::Vec3d& point,
                  const cv::Vec3d& normal) {
  const cv::Vec3d towardsLight = cv::normalize(scene.light.towards);
  const double cosine = std::max(0.0, normal.dot(towardsLight));
  const bool lit = cosine > 0 && !geometry.isBlocked({point + normal * kOffSurface, towardsLight});
  return scene.light.ambient + (lit ? (1 - scene.light.ambient) * cosine : 0);
}

} // namespace

cv::Vec3d surfaceColor(const Scene& scene, const SceneHit& hit) {
  return hit.box ? boxColor(scene.boxes[*hit.box], hit.place) : beltColor(scene.belt, hit.place[0]);
}

cv::Vec3d seenColor(const Scene& scene, const SceneGeometry& geometry, const SceneRay& ray) {
  const std::optional<SceneHit> hit = geometry.firstHit(ray);
  if (!hit) return scene.background;
  const cv::Vec3d point = ray.origin + ray.direction * hit->s;
  return surfaceColor(scene, *hit) * brightness(scene, geometry, point, hit->normal);
}

} // namespace velmorn::tool
