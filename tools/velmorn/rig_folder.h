// Rigs without a rig file: a folder with a folder of images per camera.
#ifndef VELMORN64_TOOLS_RIG_FOLDER_H
#define VELMORN64_TOOLS_RIG_FOLDER_H

#include <functional>
#include <string>
#include <vector>

#include "velmorn/rig_file.h"

namespace velmorn::tool {

// The folder of one camera, with the names of what is in it.
struct CameraFolder {
  std::string id;                  // the folder's name
  std::string intrinsics;          // name of the camera file; empty without one
  std::vector<std::string> images; // names of the board images, sorted
};

// The subfolders that have board images, sorted by name. Board images are the files of an image
// format whose names begin with "board", or with "code" for a data-code board; when no camera has
// one, all but depth.* and color.*. A camera file is intrinsics.yml, .yaml, .xml or .json.
std::vector<CameraFolder> cameraFolders(const std::string& folder, bool hasDataCodes);

// Reads such a folder. Images of equal names show one board position; a name that a camera does not
// have stands for an image of it that cannot be loaded.
//
// board      "9x6" or "data-code", as in a rig file
// square     side of a square; of a plain board only
// calibrate  called for a camera without a camera file, with the paths of its images and of the
//            file to write; of a plain board only
//
// Throws ToolError that names the folder for one that makes no rig.
Rig readRigFolder(
    const std::string& folder, const std::string& board, double square,
    const std::function<void(const std::vector<std::string>&, const std::string&)>& calibrate);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_RIG_FOLDER_H
