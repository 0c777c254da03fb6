// The command line of `velmorn merge`.
#include "velmorn/merge_arguments.h"

#include <filesystem>
#include <memory>

#include "velmorn/arguments.h"

namespace velmorn::tool {
namespace {

constexpr const char* kMergeExample =
    "Example:\n"
    "  velmorn merge merge.json -o merged.ply\n"
    "with merge.json\n"
    "  {\n"
    "    \"result\": \"result.json\",\n"
    "    \"cameras\": [\n"
    "      {\"id\": \"left\", \"depth\": \"left-depth.png\", \"color\": \"left.png\"},\n"
    "      {\"id\": \"right\", \"depth\": \"right-depth.png\", \"color\": \"right.png\"}\n"
    "    ]\n"
    "  }\n"
    "\n"
    "result.json is of velmorn stitch and may be left out with one camera. Further keys: "
    "depth_unit\n"
    "(1, length units per count of the depth images), range ([nearest, farthest] depth to keep),\n"
    "voxel (side of a voxel, one point is kept in each), frame (\"base\", or a file of velmorn "
    "plane\n"
    "or velmorn platform), frame_camera (the camera that file is for, the base unless given), and\n"
    "intrinsics for a camera whose result file does not have them.\n"
    "Paths in the file are relative to it.\n"
    "\n"
    "Without a job file, from a folder with a folder per camera (rig/left/depth.png and "
    "color.png):\n"
    "  velmorn merge rig -o merged.ply";

} // namespace

void addMerge(CLI::App& app, MergeOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "merge", "Merge the depth images of a rig into one point cloud and check its seams");
  const auto voxel = std::make_shared<double>();
  command.add_option("job", options.job, "Job file, JSON, or a folder with a folder per camera")
      ->required()
      ->check(CLI::ExistingPath);
  command
      .add_option("--result", options.result,
                  "Of a folder: what velmorn stitch wrote; a job file says it itself")
      ->capture_default_str();
  command
      .add_option("-o,--output", options.output,
                  "Point cloud to write: binary PLY with colours and the index of the camera")
      ->check(hasExtension({".ply"}))
      ->capture_default_str();
  command
      .add_option("--voxel", *voxel, "Keep one point per voxel of this side; goes before the job's")
      ->check(isLength());
  command.add_option("--seams", options.seams, "File for the numbers of the seams, JSON")
      ->check(hasExtension({".json"}));
  command.footer(kMergeExample);
  command.callback([&options, &command, voxel] {
    if (command.count("--result") != 0 && !std::filesystem::is_directory(options.job))
      throw CLI::ValidationError("--result", "is for a folder; the job file says it");
    if (command.count("--voxel") != 0) options.voxel = *voxel;
  });
}

} // namespace velmorn::tool
