// The command line of `velmorn report`.
#include "velmorn/report_arguments.h"

#include "velmorn/arguments.h"
#include "velmorn/point_input.h"

namespace velmorn::tool {
namespace {

constexpr const char* kReportExample =
    "Example:\n"
    "  velmorn report result.json -o report.html\n"
    "  velmorn report result.json -o report.html --cloud merged.ply --aerial aerial.png \\\n"
    "    --title \"Line 4, cell 2\"\n"
    "\n"
    "The page is one file and needs no network: the rig in three dimensions with the merged "
    "cloud,\n"
    "the links between the cameras, every shot with its corners and its error, and the view from\n"
    "above. It opens in any browser and prints. A run that failed is shown from its\n"
    "NAME-failed.json. Images that are no longer there are named on the page.";

std::string checkPly(const std::string& path) {
  return pointFormatOf(path) == PointFormat::kPly ? "" : "has to be a .ply file";
}

} // namespace

void addReport(CLI::App& app, ReportOptions& options) {
  CLI::App& command = *app.add_subcommand(
      "report", "Show the outcome of velmorn stitch as a page to look at and to hand over");
  command.add_option("result", options.result, "Result file of velmorn stitch, JSON")
      ->required()
      ->check(CLI::ExistingFile);
  command.add_option("-o,--output", options.output, "Page to write")
      ->check(hasExtension({".html", ".htm"}))
      ->capture_default_str();
  command.add_option("--cloud", options.cloud, "Merged point cloud to show, PLY, base frame")
      ->check(CLI::ExistingFile & CLI::Validator(checkPly, ""));
  command.add_option("--aerial", options.aerial, "Picture of velmorn aerial to show")
      ->check(CLI::ExistingFile);
  command.add_option("--title", options.title, "Heading of the page")->capture_default_str();
  command.footer(kReportExample);
}

} // namespace velmorn::tool
