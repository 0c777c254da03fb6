// The command line of `velmorn plane` and `velmorn platform`.
#include "velmorn/plane_arguments.h"

#include <memory>

#include "velmorn/arguments.h"
#include "velmorn/board.h"
#include "velmorn/point_input.h"

namespace velmorn::tool {
namespace {

constexpr const char* kPlaneExample =
    "Example:\n"
    "  velmorn plane belt.ply --threshold 2\n"
    "  velmorn plane depth.png --intrinsics cam.yml --depth-scale 0.1 --threshold 2 -o belt.json\n"
    "\n"
    "The cloud is in camera coordinates: .ply or .pcd, text or binary, or .xyz with x y z per "
    "line.\n"
    "A depth image has 16 bits, z per pixel, and 0 where nothing was measured.\n"
    "velmorn.log comes into the working directory when there is no plane.";

constexpr const char* kPlatformExample =
    "Example:\n"
    "  velmorn platform top.png --intrinsics cam.yml --board 9x6 --square 20 --offset 150,80,0\n"
    "\n"
    "The platform's frame is the board's turned by half a turn about its x axis (z then points to\n"
    "a camera above it), or the board's own with --keep-board-axes. The offset is added to the\n"
    "camera's place in that frame.";

std::string checkPointFile(const std::string& path) {
  return pointFormatOf(path) ? "" : "has to be a .ply, .pcd, .xyz, .png or .tif file";
}

// What a depth image needs, and nothing else may have.
void checkDepthOptions(const PlaneOptions& options, const CLI::App& command) {
  const bool isDepth = pointFormatOf(options.input) == PointFormat::kDepthImage;
  if (isDepth && options.intrinsics.empty()) {
    throw CLI::ValidationError("--intrinsics", "is required for a depth image");
  }
  for (const char* name : {"--intrinsics", "--depth-scale"}) {
    if (!isDepth && command.count(name) != 0) {
      throw CLI::ValidationError(name, "is for a depth image only");
    }
  }
}

} // namespace

void addPlane(CLI::App& app, PlaneOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "plane", "Find the reference plane in a point cloud or depth image of one camera");
  const auto threshold = std::make_shared<double>();
  command.add_option("input", options.input, "Point cloud or depth image")
      ->required()
      ->check(CLI::ExistingFile & CLI::Validator(checkPointFile, ""));
  command.add_option("--threshold", *threshold, "Distance below which a point is on the plane")
      ->required()
      ->check(isLength());
  command.add_option("--intrinsics", options.intrinsics, "Camera file, for a depth image")
      ->check(CLI::ExistingFile);
  command
      .add_option("--depth-scale", options.depthScale, "Length units per count of a depth image")
      ->check(isLength())
      ->capture_default_str();
  command.add_option("-o,--output", options.output, "File to write, JSON")->capture_default_str();
  command.footer(kPlaneExample);
  command.callback([&options, &command, threshold] {
    options.threshold = *usableSquare(*threshold);
    checkDepthOptions(options, command);
  });
}

void addPlatform(CLI::App& app, PlatformOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "platform", "Find where a camera stands over a platform with a chessboard lying on it");
  const auto board = std::make_shared<std::string>();
  const auto square = std::make_shared<double>();
  const auto offset = std::make_shared<std::string>("0,0,0");
  command.add_option("image", options.image, "Image file, grey or colour")
      ->required()
      ->check(CLI::ExistingFile);
  command.add_option("--intrinsics", options.intrinsics, "Camera file")
      ->required()
      ->check(CLI::ExistingFile);
  addBoardOptions(command, *board, *square);
  command.add_option("--offset", *offset, "Added to the camera's place, length unit")
      ->check(isNumberList(3, "X,Y,Z"))
      ->capture_default_str();
  command.add_flag("--keep-board-axes", options.board.keepBoardAxes,
                   "Do not turn the board's frame over");
  command.add_option("-o,--output", options.output, "File to write, JSON")->capture_default_str();
  command.footer(kPlatformExample);
  command.callback([&options, board, square, offset] {
    options.board.size = *parseBoard(*board);
    options.board.square = *usableSquare(*square);
    const std::vector<float> values = *parseNumbers(*offset, 3);
    options.board.offset = {values[0], values[1], values[2]};
  });
}

} // namespace velmorn::tool
