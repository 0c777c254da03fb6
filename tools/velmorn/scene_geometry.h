// Where lines of sight meet a scene.
#ifndef VELMORN64_TOOLS_SCENE_GEOMETRY_H
#define VELMORN64_TOOLS_SCENE_GEOMETRY_H

#include <cstddef>
#include <optional>
#include <vector>

#include <opencv2/core.hpp>

#include "velmorn/scene_model.h"

namespace velmorn::tool {

// The points origin + s * direction with s > 0, world. The direction may have any length but 0.
struct SceneRay {
  cv::Vec3d origin;
  cv::Vec3d direction;
};

// The first point of a ray on a surface.
struct SceneHit {
  double s = 0;                   // its place on the ray, in lengths of the direction
  cv::Vec3d normal;               // of the surface, outwards, length 1, world
  cv::Vec3d place;                // in the frame of its box, origin in the foot; belt: world
  std::optional<std::size_t> box; // index in the scene's boxes; none for the belt
};

// The scene's shapes, prepared for many rays. Keeps nothing of the scene it was made from.
class SceneGeometry {
 public:
  explicit SceneGeometry(const Scene& scene);

  // Nothing when the ray meets neither a box nor the belt. A box around the origin is not seen. Of
  // surfaces at one place the belt comes first, then the boxes in their order.
  std::optional<SceneHit> firstHit(const SceneRay& ray) const;

  // True when a box is in the ray's way.
  bool isBlocked(const SceneRay& ray) const;

 private:
  struct Box {
    cv::Vec3d foot;
    cv::Vec3d low, high; // corners in the box's own frame
    double cosine = 1, sine = 0;
    cv::Vec3d centre; // of a sphere around the box
    double radiusSquared = 0;
  };

  // True when the ray meets the sphere around the box; most rays do not.
  static bool isNear(const Box& box, const SceneRay& ray);

  static SceneRay inFrameOf(const Box& box, const SceneRay& ray);
  static std::optional<SceneHit> hitOn(const Box& box, const SceneRay& ray);
  std::optional<SceneHit> hitOnBelt(const SceneRay& ray) const;

  double beltLength_ = 0, beltWidth_ = 0;
  std::vector<Box> boxes_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SCENE_GEOMETRY_H
