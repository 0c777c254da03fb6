// The command line of `velmorn simulate`.
#include "velmorn/simulate_arguments.h"

#include <limits>

#include "velmorn64.h"

namespace velmorn::tool {
namespace {

constexpr const char* kSimulateExample =
    "Example:\n"
    "  velmorn simulate --cameras 4 -o rig\n"
    "  velmorn stitch rig/rig.json -o rig/result.json\n"
    "  velmorn aerial rig/aerial.json -o rig/aerial.png\n"
    "or velmorn simulate job.json -o rig, with job.json\n"
    "  {\n"
    "    \"kind\": \"platform\", \"cameras\": 3, \"height\": 1500, \"noise\": 3,\n"
    "    \"plain\": {\"board\": \"9x6\", \"square\": 40, \"shots\": 8},\n"
    "    \"data_code\": {\"squares\": \"30x20\", \"size\": 70},\n"
    "    \"depth\": {\"noise\": 1, \"holes\": 0.01}\n"
    "  }\n"
    "\n"
    "Writes board images, depth and colour images, camera files, rig.json, rig-data-code.json,\n"
    "merge.json, aerial.json and truth.json, the true places of cameras and boards. One job and "
    "seed\n"
    "give the same files in every run.";

} // namespace

void addSimulate(CLI::App& app, SimulateOptions& options) {
  CLI::App& command =
      *app.add_subcommand("simulate", "Render the images of a rig, to try the other commands on");
  command.add_option("job", options.job, "Job file, JSON")->check(CLI::ExistingFile);
  command.add_option("--cameras", options.overrides.cameras, "Number of cameras, 4 unless given")
      ->check(CLI::Range(2, kMaxStitchCameras));
  command
      .add_option("--seed", options.overrides.seed,
                  "Another number gives other places and other noise; 1 unless given")
      ->check(CLI::Range(0, std::numeric_limits<int>::max()));
  command.add_flag("--force", options.force, "Replace files that are there");
  command.add_option("-o,--output", options.output, "Folder to write into, made if needed")
      ->required();
  command.footer(kSimulateExample);
}

} // namespace velmorn::tool
