// The tool's command line.
#include "velmorn/command_line.h"

#include <filesystem>
#include <iostream>

#include <CLI/CLI.hpp>
#include <opencv2/core.hpp>
#include <opencv2/core/utils/logger.hpp>

#include "velmorn/arguments.h"
#include "velmorn/board.h"
#include "velmorn/board_arguments.h"
#include "velmorn/check_command.h"
#include "velmorn/depth_arguments.h"
#include "velmorn/extrinsic_arguments.h"
#include "velmorn/intrinsics_command.h"
#include "velmorn/merge_arguments.h"
#include "velmorn/plane_arguments.h"
#include "velmorn/report_arguments.h"
#include "velmorn/rig_file.h"
#include "velmorn/simulate_arguments.h"
#include "velmorn/stitch_command.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr const char* kIntrinsicsExample =
    "Example:\n"
    "  velmorn intrinsics --board 9x6 --square 25 -o left.yml left*.jpg\n"
    "\n"
    "Take 10 or more images, the board tilted differently and in all parts of the image.";

constexpr const char* kStitchExample =
    "Example:\n"
    "  velmorn stitch rig.json\n"
    "with rig.json\n"
    "  {\n"
    "    \"board\": \"9x6\", \"square\": 25,\n"
    "    \"cameras\": [\n"
    "      {\"id\": \"left\", \"intrinsics\": \"left.yml\", \"images\": \"left*.jpg\"},\n"
    "      {\"id\": \"right\", \"intrinsics\": \"right.yml\", \"images\": \"right*.jpg\"}\n"
    "    ]\n"
    "  }\n"
    "\n"
    "Further keys: min_images (3), base (\"auto\" or an id), save_corner_images (false).\n"
    "A data-code board is \"board\": \"data-code\", with min_corners (12) and without square and\n"
    "min_images.\n"
    "One number of a plain board should be odd, one even: others look the same after half a turn.\n"
    "Without a rig file, from a folder with a folder of images per camera:\n"
    "  velmorn stitch rig --board 9x6 --square 25\n"
    "with rig/left/board-01.png and so on; images of equal names show one board position, and\n"
    "rig/left/intrinsics.yml is made from them when it is not there.\n"
    "Paths in the file are relative to it. Image j of every camera shows the same board position.\n"
    "velmorn.log and, with save_corner_images, chessImgs/ come into the working directory.";

constexpr const char* kCheckExample =
    "Example:\n"
    "  velmorn check result.json\n"
    "\n"
    "Exit status 0: the result can be used; 3: it is not to be trusted. When the run failed, what "
    "it\n"
    "found (result-failed.json) is checked.";

// Nothing on the standard error but the tool's own lines: its messages say what OpenCV's would.
void silenceOpenCv() {
  cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
  cv::redirectError([](int, const char*, const char*, const char*, int, void*) { return 0; });
}

std::string checkCameraFileName(const std::string& text) {
  const std::size_t dot = text.rfind('.');
  const std::string extension = dot == std::string::npos ? "" : text.substr(dot);
  const bool isOther = extension == ".xml" || extension == ".json";
  return isOther ? "the camera file is YAML, name it .yml" : "";
}

void addIntrinsics(CLI::App& app, std::string& board, double& square, IntrinsicsOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "intrinsics", "Calibrate one camera from images of a chessboard and write its camera file");
  addBoardOptions(command, board, square);
  command.add_option("-o,--output", options.output, "Camera file to write, OpenCV YAML")
      ->required()
      ->check(CLI::Validator(checkCameraFileName, "FILE"));
  command.add_option("images", options.images, "Image files, or quoted patterns with * and ?")
      ->required();
  command.footer(kIntrinsicsExample);
  command.callback([&] {
    options.board = *parseBoard(board);
    options.square = *usableSquare(square);
  });
}

// A rig file says what the board is; a folder does not.
void requireBoardOfFolder(const StitchOptions& options) {
  if (!std::filesystem::is_directory(options.rig)) {
    if (!options.board.empty() || options.square != 0)
      throw CLI::ValidationError("--board and --square are for a folder; the rig file says them");
    return;
  }
  const bool hasDataCodes = options.board == kDataCodeBoard;
  if (!hasDataCodes && !parseBoard(options.board))
    throw CLI::ValidationError("--board", "of a folder is data-code or " + boardRule());
  if (hasDataCodes != (options.square == 0) || (!hasDataCodes && !usableSquare(options.square)))
    throw CLI::ValidationError("--square", "of a folder is a length above 0, for a plain board");
}

void addStitch(CLI::App& app, StitchOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "stitch", "Compute the transform between every camera of a rig and its base camera");
  command.add_option("rig", options.rig, "Rig file, JSON, or a folder with a folder per camera")
      ->required()
      ->check(CLI::ExistingPath);
  command.add_option("--board", options.board,
                     "Of a folder: inner corners per row and column, WxH, or data-code");
  command.add_option("--square", options.square, "Of a folder: side of a square, LENGTH");
  command.callback([&] { requireBoardOfFolder(options); });
  command.add_option("-o,--output", options.output, "Result file to write, JSON")
      ->capture_default_str();
  command.footer(kStitchExample);
}

void addCheck(CLI::App& app, CheckOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "check", "Say whether a calibration is good enough, and what to do if it is not");
  command.add_option("results", options.results, "Result files that velmorn stitch wrote")
      ->required();
  command.footer(kCheckExample);
}

int reportFailure(const std::string& reason) {
  std::cerr << "velmorn: " << oneLine(reason) << std::endl;
  return kExitFailed;
}

// Runs a command, which gives the exit status; whatever stops it becomes one line.
template <typename Command>
int runCommand(Command&& command) {
  try {
    const int status = command();
    std::cout.flush();
    return std::cout ? status : reportFailure("cannot write to the standard output");
  } catch (const ToolError& error) {
    return reportFailure(error.what());
  } catch (const cv::Exception& error) {
    return reportFailure("OpenCV: " + error.err + " (in " + error.func + ")");
  } catch (const std::exception& error) {
    return reportFailure(error.what());
  }
}

// The commands with what their options are read into.
struct CommandLine {
  CommandLine();
  int run() const; // the parsed command; returns the exit status

  std::string board;
  double square = 0;
  IntrinsicsOptions intrinsics;
  StitchOptions stitch;
  CheckOptions check;
  PlaneOptions plane;
  PlatformOptions platform;
  ExtrinsicOptions extrinsic;
  AerialOptions aerial;
  MergeOptions merge;
  AverageOptions average;
  BackgroundOptions background;
  FieldOptions field;
  PrintOptions print;
  CornersOptions corners;
  SimulateOptions simulate;
  ReportOptions report;

  CLI::App app{
      "Rigid transforms between cameras, and from cameras to planes and platforms; views from "
      "above, averages and backgrounds of depth data",
      "velmorn"};
};

CommandLine::CommandLine() {
  app.set_version_flag("--version", std::string("velmorn ") + VELMORN64_VERSION);
  app.footer("velmorn COMMAND --help shows the options and an example of a command.");
  app.require_subcommand(1);
  addIntrinsics(app, board, square, intrinsics);
  addStitch(app, stitch);
  addCheck(app, check);
  addPlane(app, plane);
  addPlatform(app, platform);
  addExtrinsic(app, extrinsic);
  addAerial(app, aerial);
  addMerge(app, merge);
  addAverage(app, average);
  addBackground(app, background);
  addField(app, field);
  addBoard(app, print);
  addCorners(app, corners);
  addSimulate(app, simulate);
  addReport(app, report);
}

int CommandLine::run() const {
  return runCommand([&] {
    if (app.got_subcommand("intrinsics")) runIntrinsics(intrinsics);
    if (app.got_subcommand("stitch")) runStitch(stitch);
    if (app.got_subcommand("check") && !runCheck(check)) return kExitNotTrusted;
    if (app.got_subcommand("plane")) runPlane(plane);
    if (app.got_subcommand("platform")) runPlatform(platform);
    if (app.got_subcommand("extrinsic")) runExtrinsic(extrinsic);
    if (app.got_subcommand("aerial")) runAerial(aerial);
    if (app.got_subcommand("merge")) runMerge(merge);
    if (app.got_subcommand("average")) runAverage(average);
    if (app.got_subcommand("background")) runBackground(background);
    if (app.got_subcommand("field")) runField(field);
    if (app.got_subcommand("board")) runBoard(print);
    if (app.got_subcommand("corners")) runCorners(corners);
    if (app.got_subcommand("simulate")) runSimulate(simulate);
    if (app.got_subcommand("report")) runReport(report);
    return kExitSuccess;
  });
}

} // namespace

std::shared_ptr<const CLI::App> unparsedCommandLine() {
  const auto line = std::make_shared<CommandLine>();
  return {line, &line->app};
}

int runCommandLine(int argc, const char* const* argv) {
  silenceOpenCv();
  CommandLine line;
  try {
    line.app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return line.app.exit(error) == 0 ? kExitSuccess : kExitUsage;
  }
  return line.run();
}

} // namespace velmorn::tool
