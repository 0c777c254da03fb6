// Things to look at: a belt with parcels, a table with objects. Millimetres.
#ifndef VELMORN64_TOOLS_SCENE_PARCELS_H
#define VELMORN64_TOOLS_SCENE_PARCELS_H

#include <vector>

#include "velmorn/scene_model.h"

namespace velmorn::tool {

// A belt 1000 wide between two rails over the floor.
Scene emptyBelt(double length);

// Fourteen parcels on the belt around x = 0, within kParcelsLength along it.
std::vector<SceneBox> parcels();
constexpr double kParcelsLength = 2300;

// A table over the floor, and seven objects around its middle.
Scene emptyTable(double length, double width);
std::vector<SceneBox> tableObjects();

// The scene with all its lengths multiplied.
Scene scaled(Scene scene, double factor);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SCENE_PARCELS_H
