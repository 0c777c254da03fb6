// `velmorn check`: whether a calibration is good enough, in plain words.
#include "velmorn/check_command.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "velmorn/check_lenses.h"
#include "velmorn/check_links.h"
#include "velmorn/check_motion.h"
#include "velmorn/check_views.h"
#include "velmorn/coverage.h"
#include "velmorn/progress.h"
#include "velmorn/result_file.h"
#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

bool isProblem(const Finding& finding) { return finding.weight == Weight::kProblem; }

std::string boardText(const StitchRecord& run) {
  if (run.hasDataCodes) return "a data-code board";
  return "a board of " + std::to_string(run.board.width) + "x" + std::to_string(run.board.height) +
         " inner corners";
}

std::string cameraLine(const CameraRecord& camera) {
  std::string line = "  " + inQuotes(camera.id) + ": ";
  if (camera.isBase) line += "base, ";
  if (!camera.parent.empty()) line += "linked to " + inQuotes(camera.parent) + ", ";
  line += std::to_string(camera.imagesFound) + " of " + counted(camera.imagesTotal, "image") +
          " with the board";
  if (!camera.shots.empty() && camera.imagesFound > 0)
    line += ", reprojection error " + roughNumberText(medianReprojectionError(camera)) +
            " pixels, corners cover " + roughNumberText(std::round(coverageOf(camera).percent)) +
            " % of the image";
  if (!camera.parent.empty() && camera.residual)
    line += ", residual " + roughNumberText(*camera.residual);
  return line;
}

std::string verdict(const Findings& findings) {
  if (std::any_of(findings.begin(), findings.end(), isProblem))
    return "Do not trust this result. Solve the problems above, stitch again and check again.";
  if (!findings.empty())
    return "The result can be used. What is said above would make it better or surer.";
  return "The calibration is good.";
}

// What the last run found, when it failed; else the file.
std::string latestOf(const std::string& path) {
  const std::string failed = failedResultPath(path);
  std::error_code ignored;
  return std::filesystem::exists(failed, ignored) ? failed : path;
}

void warnAboutFailure(const std::string& path, const std::string& checked) {
  if (path == checked) return;
  std::error_code ignored;
  printWarning(std::filesystem::exists(path, ignored)
                   ? "the last run failed, " + path + " is an older one's; checking " + checked
                   : "the run failed and wrote no " + path + "; checking " + checked);
}

} // namespace

Findings checkRun(const StitchRecord& run) {
  Findings findings;
  for (const auto& check : {checkLinks, checkLenses, checkMotion, checkViews}) {
    const Findings own = check(run);
    findings.insert(findings.end(), own.begin(), own.end());
  }
  if (!run.error.empty() && std::none_of(findings.begin(), findings.end(), isProblem))
    findings.push_back(
        {Weight::kProblem, "the run failed: " + run.error, "solve this and stitch again"});
  std::stable_partition(findings.begin(), findings.end(), isProblem);
  return findings;
}

std::string checkText(const std::string& path, const StitchRecord& run, const Findings& findings) {
  std::ostringstream text;
  text << oneLine(path) << ": " << counted(run.cameras.size(), "camera") << " before "
       << boardText(run) << '\n';
  for (const CameraRecord& camera : run.cameras) text << oneLine(cameraLine(camera)) << '\n';
  for (const Finding& finding : findings)
    text << '\n'
         << (isProblem(finding) ? "PROBLEM  " : "caution  ") << oneLine(finding.text) << ".\n"
         << "  what to do: " << oneLine(finding.advice) << ".\n";
  text << '\n' << verdict(findings) << '\n';
  return text.str();
}

bool runCheck(const CheckOptions& options) {
  bool isTrusted = true;
  for (const std::string& path : options.results) {
    const std::string checked = latestOf(path);
    warnAboutFailure(path, checked);
    const StitchRecord run = readStitchRecord(checked);
    const Findings findings = checkRun(run);
    if (&path != &options.results.front()) std::cout << '\n';
    std::cout << checkText(checked, run, findings);
    isTrusted = isTrusted && std::none_of(findings.begin(), findings.end(), isProblem);
  }
  return isTrusted;
}

} // namespace velmorn::tool
