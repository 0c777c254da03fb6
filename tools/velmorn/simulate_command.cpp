// `velmorn simulate`: a rig to try without hardware.
#include "velmorn/simulate_command.h"

#include <filesystem>
#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/grey_image.h"
#include "velmorn/image_file.h"
#include "velmorn/progress.h"
#include "velmorn/round_numbers.h"
#include "velmorn/simulate_files.h"
#include "velmorn/simulate_images.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;

struct Simulation {
  SimulateJob job;
  SimulatedRig rig;
  SimulatedBoards boards;
};

Simulation prepare(const SimulateOptions& options) {
  Simulation simulation;
  simulation.job = readSimulateJob(options.job, options.overrides);
  try {
    simulation.rig = simulatedRig(simulation.job);
    simulation.boards = simulatedBoards(simulation.job, simulation.rig);
  } catch (const ToolError& error) {
    throw ToolError(options.job.empty() ? error.what() : options.job + ": " + error.what());
  }
  return simulation;
}

void refuseExisting(const fs::path& folder, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    std::error_code error;
    if (!fs::exists(folder / name, error)) continue;
    throw ToolError((folder / name).string() + " is there already; --force replaces it");
  }
}

void makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!fs::is_directory(folder, error)) {
    throw ToolError("cannot make the folder " + folder.string());
  }
}

// Writes the images one by one and tells about each.
class ImageWriter {
 public:
  ImageWriter(const fs::path& folder, std::size_t total) : folder_(folder), total_(total) {}

  void write(const std::string& name, const cv::Mat& image) {
    const std::string path = (folder_ / name).string();
    writeFileAtomically(path, imageFileText(path, image));
    ++number_;
    const std::size_t slash = name.find('/');
    printProgress(number_, total_, name.substr(0, slash) + " " + name.substr(slash + 1),
                  sizeText(image.size()));
  }

 private:
  fs::path folder_;
  std::size_t total_;
  std::size_t number_ = 0;
};

void writeImages(const Simulation& simulation, const CodeBoardSymbols& symbols, std::size_t camera,
                 ImageWriter& writer) {
  const SimulatedBoards& boards = simulation.boards;
  const SimulatedImages images(simulation.job, simulation.rig, boards, symbols, camera);
  for (std::size_t shot = 0; shot < boards.plainShots.size(); ++shot) {
    writer.write(plainImageName(boards, camera, shot), images.plainBoard(shot));
  }
  for (std::size_t shot = 0; shot < boards.codeShots.size(); ++shot) {
    writer.write(codeImageName(boards, camera, shot), images.codeBoard(shot));
  }
  writer.write(depthImageName(camera), images.depth());
  writer.write(colorImageName(camera), images.color());
}

void printSummary(const SimulateOptions& options, const Simulation& simulation) {
  const SimulateJob& job = simulation.job;
  const SimulatedBoards& boards = simulation.boards;
  const bool isConveyor = job.kind == SimulatedKind::kConveyor;
  const auto squareText = [&](double square) {
    return " of " + shortNumberText(square) + " " + job.unit + ", ";
  };
  const std::string folder = oneLine(options.output);
  std::cout << "cameras     " << job.cameras.size() << " over a "
            << (isConveyor ? "conveyor" : "platform") << ", base "
            << simulatedId(simulation.rig.base) << '\n'
            << "board       " << sizeText(boards.plain.corners) << " inner corners, squares"
            << squareText(boards.plain.square) << counted(boards.plainShots.size(), "shot") << '\n'
            << "data codes  " << sizeText({boards.code.columns, boards.code.rows}) << " squares"
            << squareText(boards.code.square) << counted(boards.codeShots.size(), "shot") << '\n'
            << "written to  " << folder << '\n'
            << "next        velmorn stitch " << folder << "/rig.json -o " << folder
            << "/result.json\n";
}

} // namespace

void runSimulate(const SimulateOptions& options) {
  const Simulation simulation = prepare(options);
  const CodeBoardSymbols symbols(simulation.boards.code);
  const fs::path folder = options.output;
  const std::vector<SimulatedFile> texts =
      textFilesOf(simulation.job, simulation.rig, simulation.boards);
  const std::vector<std::string> images = imageNamesOf(simulation.rig, simulation.boards);
  if (!options.force) {
    std::vector<std::string> names = images;
    for (const SimulatedFile& file : texts) names.push_back(file.name);
    refuseExisting(folder, names);
  }
  for (std::size_t i = 0; i < simulation.rig.cameras.size(); ++i) {
    makeFolder(folder / simulatedId(i));
  }
  ImageWriter writer(folder, images.size());
  for (std::size_t i = 0; i < simulation.rig.cameras.size(); ++i) {
    writeImages(simulation, symbols, i, writer);
  }
  for (const SimulatedFile& file : texts) {
    writeFileAtomically((folder / file.name).string(), file.text);
  }
  printSummary(options, simulation);
}

} // namespace velmorn::tool
