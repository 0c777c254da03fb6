// The command line of `velmorn aerial`, `average`, `background` and `field`.
#include "velmorn/depth_arguments.h"

#include <limits>
#include <memory>

#include "velmorn/arguments.h"
#include "velmorn/board.h"
#include "velmorn/point_input.h"

namespace velmorn::tool {
namespace {

constexpr const char* kAerialExample =
    "Example:\n"
    "  velmorn aerial job.json\n"
    "with job.json\n"
    "  {\n"
    "    \"region\": [-400, -300, 400, 300], \"resolution\": 2,\n"
    "    \"result\": \"result.json\",\n"
    "    \"cameras\": [\n"
    "      {\"id\": \"left\", \"depth\": \"left-depth.png\", \"intrinsics\": \"left.yml\"},\n"
    "      {\"id\": \"right\", \"depth\": \"right-depth.png\", \"intrinsics\": \"right.yml\"}\n"
    "    ]\n"
    "  }\n"
    "\n"
    "The region is x1, y1, x2, y2 in the first camera's frame; result.json is of velmorn stitch "
    "and\n"
    "may be left out with one camera. Further keys: depth_unit (1, length units per count of the\n"
    "depth images), and color for every camera, an image of the depth image's size.\n"
    "Paths in the file are relative to it. velmorn.log comes into the working directory when the\n"
    "library refuses an image.";

constexpr const char* kAverageExample =
    "Example:\n"
    "  velmorn average -o mean.png \"burst/*.png\"\n"
    "\n"
    "All images have one size and are 16-bit depth, 8-bit grey or 8-bit colour. Depth samples of "
    "0,\n"
    "which is no measurement, do not count. velmorn.log comes into the working directory when the\n"
    "library refuses an image.";

constexpr const char* kBackgroundExample =
    "Example:\n"
    "  velmorn background empty.ply --cell 5 --region=-400,-300,400,300 --highest\n"
    "\n"
    "The cloud is .ply or .pcd, text or binary, or .xyz with x y z per line. The file to write "
    "has\n"
    "one z per cell, in single precision; the picture beside it, NAME-view.png, is to look at.";

constexpr const char* kFieldExample =
    "Example:\n"
    "  velmorn field --intrinsics cam.yml --distance 1500\n"
    "  velmorn field --fov 60 --pixels 640 --distance 1500";

std::string checkCloudFile(const std::string& path) {
  const std::optional<PointFormat> format = pointFormatOf(path);
  const bool isCloud = format && *format != PointFormat::kDepthImage;
  return isCloud ? "" : "has to be a .ply, .pcd or .xyz file";
}

std::string checkFieldOfView(const std::string& text) {
  const std::optional<std::vector<float>> degrees = parseNumbers(text, 1);
  const bool isAngle = degrees && degrees->front() > 0 && degrees->front() < 180;
  return isAngle ? "" : "has to be an angle between 0 and 180";
}

CLI::Range anyCount() { return CLI::Range(1, std::numeric_limits<int>::max(), "COUNT"); }

// The camera file, or the angle and the pixels.
void checkFieldOptions(const CLI::App& command) {
  const bool byCamera = command.count("--intrinsics") != 0;
  const bool byAngle = command.count("--fov") != 0 || command.count("--pixels") != 0;
  if (byCamera && byAngle) throw CLI::ExcludesError("--intrinsics", "--fov and --pixels");
  if (!byCamera && command.count("--size") != 0) throw CLI::RequiresError("--size", "--intrinsics");
  if (byCamera || (command.count("--fov") != 0 && command.count("--pixels") != 0)) return;
  throw CLI::RequiredError("--intrinsics, or --fov and --pixels,");
}

} // namespace

void addAerial(CLI::App& app, AerialOptions& options) {
  CLI::App& command =
      *app.add_subcommand("aerial", "Show from above what one or more depth cameras see");
  command.add_option("job", options.job, "Job file, JSON")->required()->check(CLI::ExistingFile);
  command
      .add_option("-o,--output", options.output,
                  "Picture to write; its legend comes beside it as NAME-legend.png")
      ->check(hasExtension({".png"}))
      ->capture_default_str();
  command.footer(kAerialExample);
}

void addAverage(CLI::App& app, AverageOptions& options) {
  CLI::App& command =
      *app.add_subcommand("average", "Average a burst of depth, grey or colour images");
  command.add_option("-o,--output", options.output, "Image to write, of the images' own type")
      ->required()
      ->check(hasExtension({".png", ".tif", ".tiff"}));
  command.add_option("images", options.images, "Image files, or quoted patterns with * and ?")
      ->required();
  command.footer(kAverageExample);
}

void addBackground(CLI::App& app, BackgroundOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "background", "Turn the point cloud of an empty scene into a height map without gaps");
  const auto cell = std::make_shared<double>();
  const auto region = std::make_shared<std::string>();
  command.add_option("input", options.input, "Point cloud")
      ->required()
      ->check(CLI::ExistingFile & CLI::Validator(checkCloudFile, ""));
  command.add_option("--cell", *cell, "Side of a cell, in the points' unit")
      ->required()
      ->check(isLength());
  command.add_option("--region", *region, "Part of the x/y plane, the cloud's own unless given")
      ->check(isRegion());
  command.add_flag("--highest", options.keepHighest,
                   "Keep the highest z of a cell, not the lowest");
  command.add_option("--min-points", options.minPoints, "Least number of points in the cloud")
      ->check(anyCount())
      ->capture_default_str();
  command.add_option("-o,--output", options.output, "Heights to write, 32-bit floating point TIFF")
      ->check(hasExtension({".tif", ".tiff"}))
      ->capture_default_str();
  command.footer(kBackgroundExample);
  command.callback([&options, cell, region] {
    options.cell = *usableSquare(*cell);
    options.region = parseRegion(*region);
  });
}

void addField(CLI::App& app, FieldOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "field", "Tell what a camera covers at a distance, and what a pixel of it covers");
  const auto distance = std::make_shared<double>();
  const auto size = std::make_shared<std::string>();
  command.add_option("--distance", *distance, "From the camera, length unit")
      ->required()
      ->check(isLength());
  command.add_option("--intrinsics", options.intrinsics, "Camera file")->check(CLI::ExistingFile);
  command.add_option("--size", *size, "Image size in pixels, the camera file's own unless given")
      ->check(isImageSize());
  command.add_option("--fov", options.degrees, "Angle of view along the pixels")
      ->check(CLI::Validator(checkFieldOfView, "DEGREES"));
  command.add_option("--pixels", options.pixels, "Number of pixels along the angle")
      ->check(anyCount());
  command.footer(kFieldExample);
  command.callback([&options, &command, distance, size] {
    checkFieldOptions(command);
    options.distance = *usableSquare(*distance);
    if (!size->empty()) options.imageSize = *parseImageSize(*size);
  });
}

} // namespace velmorn::tool
