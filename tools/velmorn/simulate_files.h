// The files of a simulated rig's folder, and what those for other commands say.
#ifndef VELMORN64_TOOLS_SIMULATE_FILES_H
#define VELMORN64_TOOLS_SIMULATE_FILES_H

#include <cstddef>
#include <string>
#include <vector>

#include "velmorn/simulate_images.h"
#include "velmorn/simulate_job.h"
#include "velmorn/simulate_rig.h"

namespace velmorn::tool {

// Names relative to the folder.
std::string plainImageName(const SimulatedBoards& boards, std::size_t camera, std::size_t shot);
std::string codeImageName(const SimulatedBoards& boards, std::size_t camera, std::size_t shot);
std::string depthImageName(std::size_t camera);
std::string colorImageName(std::size_t camera);
std::string intrinsicsName(std::size_t camera);

struct SimulatedFile {
  std::string name; // relative to the folder
  std::string text;
};

// Everything but the images: camera files, rig.json and rig-data-code.json for `velmorn stitch`,
// merge.json, aerial.json and truth.json.
std::vector<SimulatedFile> textFilesOf(const SimulateJob& job, const SimulatedRig& rig,
                                       const SimulatedBoards& boards);

// The names of all images, camera by camera.
std::vector<std::string> imageNamesOf(const SimulatedRig& rig, const SimulatedBoards& boards);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_FILES_H
