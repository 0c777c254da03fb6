// Files that hold one extrinsic.
#ifndef VELMORN64_TOOLS_EXTRINSIC_FILE_H
#define VELMORN64_TOOLS_EXTRINSIC_FILE_H

#include <string>

#include <nlohmann/json.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// A transform into the frame of a plane, a platform or a conveyor.
struct NamedExtrinsic {
  std::string direction; // "planeFromCam", or another name that ends in FromCam
  tagOzKCamExtrinsic extrinsic{};
};

// Reads "extrinsic", 16 numbers row by row or 4 rows of 4, and "direction", planeFromCam when it is
// not there. Further keys are ignored. Throws ToolError that names the file for anything else than
// a transform from camera coordinates: another direction, a number that is not finite, a last row
// that is not 0 0 0 1 or a rotation that cannot be inverted.
NamedExtrinsic readExtrinsicFile(const std::string& path);

// The keys that readExtrinsicFile reads, for a file to begin with.
nlohmann::ordered_json extrinsicJson(const NamedExtrinsic& named);

// True when the rotation part has rows of length 1 that are perpendicular to each other, as far as
// single precision goes, and is no reflection.
bool isRigid(const tagOzKCamExtrinsic& extrinsic);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_EXTRINSIC_FILE_H
