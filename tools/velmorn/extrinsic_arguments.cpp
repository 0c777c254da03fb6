// The command line of `velmorn extrinsic`.
#include "velmorn/extrinsic_arguments.h"

#include <memory>

#include "velmorn/arguments.h"

namespace velmorn::tool {
namespace {

using Text = std::shared_ptr<std::string>;

// Adds one of the tasks with what all of them have.
CLI::App& addTask(CLI::App& parent, ExtrinsicOptions& options, const std::string& name,
                  const std::string& description, const std::string& example) {
  CLI::App& command = *parent.add_subcommand(name, description);
  command.add_option("input", options.input, "File with an extrinsic, JSON")
      ->required()
      ->check(CLI::ExistingFile);
  command.add_option("-o,--output", options.output,
                     "File to write, JSON; the standard output unless given");
  command.footer("Example:\n  velmorn extrinsic " + name + ' ' + example);
  return command;
}

// An option of so many numbers, as a text to be read after parsing.
Text addNumbers(CLI::App& command, const std::string& name, const std::string& description,
                std::size_t number, const std::string& meaning) {
  const auto text = std::make_shared<std::string>();
  command.add_option(name, *text, description)->required()->check(isNumberList(number, meaning));
  return text;
}

tagOzKPoint2Df32 pixelFrom(const Text& text) {
  const std::vector<float> values = *parseNumbers(*text, 2);
  return {values[0], values[1]};
}

void addXAxis(CLI::App& parent, ExtrinsicOptions& options) {
  CLI::App& command = addTask(parent, options, "x-axis", "Give a plane's frame another x axis",
                              "plane.json --axis 1,0,0 --into-plane");
  const Text axis = addNumbers(command, "--axis", "Direction, camera coordinates", 3, "X,Y,Z");
  command.add_flag("--into-plane", options.intoPlane, "Take the part of it within the plane");
  command.callback([&options, axis] {
    const std::vector<float> values = *parseNumbers(*axis, 3);
    options.task = ExtrinsicTask::kXAxis;
    options.axis = {values[0], values[1], values[2]};
  });
}

void addNudge(CLI::App& parent, ExtrinsicOptions& options) {
  CLI::App& command = addTask(parent, options, "nudge", "Move a frame along one of its axes",
                              "plane.json --step 5 --mode 3");
  const Text step = addNumbers(command, "--step", "How far, length unit", 1, "LENGTH");
  command.add_option("--mode", options.mode, "Which way, as on the aerial image")
      ->required()
      ->check(CLI::Range(1, 4));
  command.callback([&options, step] {
    options.task = ExtrinsicTask::kNudge;
    options.step = parseNumbers(*step, 1)->front();
  });
}

void addTurn(CLI::App& parent, ExtrinsicOptions& options) {
  CLI::App& command = addTask(parent, options, "turn", "Turn a frame, as on the aerial image",
                              "plane.json --angle 90 --back");
  const Text angle = addNumbers(command, "--angle", "How far", 1, "DEGREES");
  command.add_flag("--back", options.back, "The other way round");
  command.callback([&options, angle] {
    options.task = ExtrinsicTask::kTurn;
    options.degrees = parseNumbers(*angle, 1)->front();
  });
}

void addPlaneModel(CLI::App& parent, ExtrinsicOptions& options) {
  CLI::App& command = addTask(parent, options, "plane-model",
                              "Write the plane of an extrinsic, camera coordinates", "plane.json");
  command.callback([&options] { options.task = ExtrinsicTask::kPlaneModel; });
}

void addConveyor(CLI::App& parent, ExtrinsicOptions& options) {
  CLI::App& command =
      addTask(parent, options, "conveyor", "Lay a conveyor's frame into the plane by two pixels",
              "plane.json --intrinsics cam.yml --from 210,260 --to 430,255 --direction 0");
  command.add_option("--intrinsics", options.intrinsics, "Camera file")
      ->required()
      ->check(CLI::ExistingFile);
  const Text from = addNumbers(command, "--from", "Pixel of the frame's origin", 2, "U,V");
  const Text to = addNumbers(command, "--to", "Pixel on the frame's x axis", 2, "U,V");
  command
      .add_option("--direction", options.line.direction,
                  "z axis: 0 towards the camera, 1 away from it, -1 as the plane's")
      ->required()
      ->check(CLI::Range(-1, 1));
  command.callback([&options, from, to] {
    options.task = ExtrinsicTask::kConveyor;
    options.line.from = pixelFrom(from);
    options.line.to = pixelFrom(to);
  });
}

} // namespace

void addExtrinsic(CLI::App& app, ExtrinsicOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "extrinsic", "Change an extrinsic that plane or platform wrote, or read its plane");
  command.require_subcommand(1);
  command.footer(
      "Example:\n"
      "  velmorn extrinsic x-axis plane.json --axis 1,0,0 --into-plane -o turned.json\n"
      "\n"
      "velmorn extrinsic SUBCOMMAND --help shows the options of a subcommand.");
  addXAxis(command, options);
  addNudge(command, options);
  addTurn(command, options);
  addPlaneModel(command, options);
  addConveyor(command, options);
}

} // namespace velmorn::tool
