// Whether the board was seen well: often enough, large enough, everywhere, from different angles.
#include "velmorn/check_views.h"

#include <algorithm>
#include <cmath>

#include "velmorn/coverage.h"
#include "velmorn/round_numbers.h"
#include "velmorn/shot_geometry.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kLeastCoverage = 10; // percent of the image
constexpr double kLeastAngle = 10;    // degrees between the two most different board normals
constexpr double kLeastCodeAngle = 3; // of data-code boards, which fill the image
constexpr double kLeastSquare = 23;   // pixels; the refinement of plain boards' corners looks 11
                                      // pixels around, below this at the next corner too
constexpr std::size_t kFewestToCompare = 2;
constexpr std::size_t kGoodNumber = 4; // images of a plain board

std::string nameOf(const CameraRecord& camera) { return "camera " + inQuotes(camera.id); }

void checkFound(const CameraRecord& camera, Findings& findings) {
  if (camera.imagesFound == 0 || camera.imagesFound >= kGoodNumber) return;
  findings.push_back({Weight::kCaution,
                      nameOf(camera) + ": only " + std::to_string(camera.imagesFound) + " of its " +
                          counted(camera.imagesTotal, "image") + " show the board",
                      "take more; a plain board has to be in the image as a whole with a white "
                      "margin around it, without blur, glare and shadows"});
}

void checkCoverage(const CameraRecord& camera, Findings& findings) {
  const Coverage coverage = coverageOf(camera);
  if (coverage.shots.empty() || camera.imagesFound == 0 || coverage.percent >= kLeastCoverage)
    return;
  findings.push_back({Weight::kCaution,
                      nameOf(camera) + ": the board's corners cover only " +
                          roughNumberText(std::round(coverage.percent)) + " % of its image",
                      "hold the board nearer to the camera, and in all parts of the image"});
}

double largestAngle(const CameraRecord& camera) {
  double least = 1; // cosine
  for (const ShotRecord& a : camera.shots)
    for (const ShotRecord& b : camera.shots)
      if (a.found() && b.found()) least = std::min(least, boardNormal(a).dot(boardNormal(b)));
  return std::acos(std::clamp(least, -1.0, 1.0)) * 180 / CV_PI;
}

void checkAngles(const StitchRecord& run, const CameraRecord& camera, Findings& findings) {
  const auto found = std::count_if(camera.shots.begin(), camera.shots.end(),
                                   [](const ShotRecord& shot) { return shot.found(); });
  if (static_cast<std::size_t>(found) < kFewestToCompare) return;
  const double angle = largestAngle(camera);
  if (angle >= (run.hasDataCodes ? kLeastCodeAngle : kLeastAngle)) return;
  findings.push_back({Weight::kCaution,
                      nameOf(camera) + " saw the board from one angle only: its tilt differs by " +
                          roughNumberText(std::round(angle)) + " degrees at most",
                      "tilt the board by 20 to 40 degrees in different directions"});
}

void checkSquares(const StitchRecord& run, const CameraRecord& camera, Findings& findings) {
  if (run.hasDataCodes) return;
  double least = kLeastSquare;
  const ShotRecord* smallest = nullptr;
  for (const ShotRecord& shot : camera.shots) {
    if (!shot.found()) continue;
    const double square = meanSquarePixels(run, shot);
    if (square >= least) continue;
    least = square;
    smallest = &shot;
  }
  if (smallest == nullptr) return;
  findings.push_back({Weight::kCaution,
                      nameOf(camera) + ": squares are only " + roughNumberText(std::round(least)) +
                          " pixels wide (" + fileName(smallest->image) +
                          "), too few for exact corners",
                      "use larger squares, or hold the board nearer: 25 pixels and more"});
}

} // namespace

Findings checkViews(const StitchRecord& run) {
  Findings findings;
  for (const CameraRecord& camera : run.cameras) {
    if (!run.hasDataCodes) checkFound(camera, findings);
    checkCoverage(camera, findings);
    checkAngles(run, camera, findings);
    checkSquares(run, camera, findings);
  }
  return findings;
}

} // namespace velmorn::tool
