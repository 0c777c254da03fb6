// Where lines of sight meet a scene.
#include "velmorn/scene_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmorn::tool {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// So that rounding loses no ray that touches a box's corner.
constexpr double kSphereMargin = 1.001; // of the squared radius

// The part of a ray between the two faces of a box across one axis; empty when enter > leave.
struct Span {
  double enter = -kInfinity;
  double leave = kInfinity;
};

Span spanBetweenFaces(double origin, double direction, double low, double high) {
  // Along the faces: all of the ray or nothing. The division would make NaN of a ray in a face.
  if (direction == 0) {
    if (origin >= low && origin <= high) return {};
    return {kInfinity, -kInfinity};
  }
  const double a = (low - origin) / direction, b = (high - origin) / direction;
  return {std::min(a, b), std::max(a, b)};
}

} // namespace

SceneGeometry::SceneGeometry(const Scene& scene)
    : beltLength_(scene.belt.length), beltWidth_(scene.belt.width) {
  for (const SceneBox& box : scene.boxes) {
    const double turn = box.degrees * CV_PI / 180;
    const cv::Vec3d half(box.size[0] / 2, box.size[1] / 2, 0);
    const cv::Vec3d toCentre(0, 0, box.size[2] / 2);
    boxes_.push_back({box.foot, -half, cv::Vec3d(half[0], half[1], box.size[2]), std::cos(turn),
                      std::sin(turn), box.foot + toCentre,
                      kSphereMargin * (half.dot(half) + toCentre.dot(toCentre))});
  }
}

SceneRay SceneGeometry::inFrameOf(const Box& box, const SceneRay& ray) {
  const auto turnedBack = [&box](const cv::Vec3d& v) {
    return cv::Vec3d(box.cosine * v[0] + box.sine * v[1], box.cosine * v[1] - box.sine * v[0],
                     v[2]);
  };
  return {turnedBack(ray.origin - box.foot), turnedBack(ray.direction)};
}

bool SceneGeometry::isNear(const Box& box, const SceneRay& ray) {
  const cv::Vec3d toCentre = box.centre - ray.origin;
  const double along = toCentre.dot(ray.direction);
  const double outside = toCentre.dot(toCentre) - box.radiusSquared;
  // The distance from the ray's line is below the radius, multiplied by the direction's length.
  return outside <= 0 || (along > 0 && along * along >= outside * ray.direction.dot(ray.direction));
}

std::optional<SceneHit> SceneGeometry::hitOn(const Box& box, const SceneRay& worldRay) {
  if (!isNear(box, worldRay)) return std::nullopt;
  const SceneRay ray = inFrameOf(box, worldRay);
  Span inside;
  int entered = 0; // axis across the face where the ray enters
  for (int axis = 0; axis < 3; ++axis) {
    const Span span =
        spanBetweenFaces(ray.origin[axis], ray.direction[axis], box.low[axis], box.high[axis]);
    if (span.enter > inside.enter) {
      inside.enter = span.enter;
      entered = axis;
    }
    inside.leave = std::min(inside.leave, span.leave);
    if (inside.enter > inside.leave) return std::nullopt;
  }
  if (!(inside.enter > 0)) return std::nullopt;

  cv::Vec3d normal(0, 0, 0);
  normal[entered] = ray.direction[entered] > 0 ? -1 : 1;
  SceneHit hit;
  hit.s = inside.enter;
  hit.normal = {box.cosine * normal[0] - box.sine * normal[1],
                box.sine * normal[0] + box.cosine * normal[1], normal[2]};
  hit.place = ray.origin + ray.direction * hit.s;
  return hit;
}

std::optional<SceneHit> SceneGeometry::hitOnBelt(const SceneRay& ray) const {
  if (!(ray.origin[2] > 0 && ray.direction[2] < 0)) return std::nullopt;
  SceneHit hit;
  hit.s = -ray.origin[2] / ray.direction[2];
  hit.normal = {0, 0, 1};
  hit.place = ray.origin + ray.direction * hit.s;
  const bool onBelt =
      std::abs(hit.place[0]) < beltLength_ / 2 && std::abs(hit.place[1]) < beltWidth_ / 2;
  return onBelt ? std::optional<SceneHit>(hit) : std::nullopt;
}

std::optional<SceneHit> SceneGeometry::firstHit(const SceneRay& ray) const {
  std::optional<SceneHit> first = hitOnBelt(ray);
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    std::optional<SceneHit> hit = hitOn(boxes_[i], ray);
    if (!hit || (first && first->s <= hit->s)) continue;
    hit->box = i;
    first = hit;
  }
  return first;
}

bool SceneGeometry::isBlocked(const SceneRay& ray) const {
  return std::any_of(boxes_.begin(), boxes_.end(),
                     [&ray](const Box& box) { return hitOn(box, ray).has_value(); });
}

} // namespace velmorn::tool
