// Whether the board views link all cameras of a run.
#include "velmorn/check_links.h"

#include <algorithm>
#include <vector>

#include "velmorn/shot_geometry.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kGoodLink = 3; // board positions: one is wrong, two others say so

// Group number of every camera: cameras that chains of common positions connect share one.
std::vector<std::size_t> linkedGroups(const StitchRecord& run) {
  const std::size_t count = run.cameras.size();
  std::vector<std::size_t> group(count);
  for (std::size_t i = 0; i < count; ++i) group[i] = i;
  for (std::size_t i = 0; i < count; ++i)
    for (std::size_t k = 0; k < i; ++k) {
      const std::size_t shared = sharedPositions(run.cameras[i], run.cameras[k]).size();
      if (shared < static_cast<std::size_t>(run.minImages) || group[i] == group[k]) continue;
      std::replace(group.begin(), group.end(), std::max(group[i], group[k]),
                   std::min(group[i], group[k]));
    }
  return group;
}

// The group that is to stay: the base's, or the largest one.
std::size_t mainGroup(const StitchRecord& run, const std::vector<std::size_t>& group) {
  for (std::size_t i = 0; i < group.size(); ++i)
    if (run.cameras[i].isBase) return group[i];
  std::size_t best = group.front();
  for (const std::size_t candidate : group)
    if (std::count(group.begin(), group.end(), candidate) >
        std::count(group.begin(), group.end(), best))
      best = candidate;
  return best;
}

std::string foundText(const CameraRecord& camera) {
  return std::to_string(camera.imagesFound) + " of its " + counted(camera.imagesTotal, "image") +
         " show the board";
}

Finding unlinkedFinding(const StitchRecord& run, const std::vector<std::size_t>& group,
                        std::size_t index, std::size_t main) {
  const CameraRecord& camera = run.cameras[index];
  const CameraRecord* nearest = nullptr;
  std::size_t most = 0;
  for (std::size_t k = 0; k < group.size(); ++k) {
    if (group[k] != main) continue;
    const std::size_t shared = sharedPositions(camera, run.cameras[k]).size();
    if (nearest != nullptr && shared <= most) continue;
    nearest = &run.cameras[k];
    most = shared;
  }
  const std::string pair = inQuotes(camera.id) + " and " + inQuotes(nearest->id);
  Finding finding;
  finding.weight = Weight::kProblem;
  finding.text = "camera " + inQuotes(camera.id) + " is not linked to the others: " + pair +
                 " both see the board in " + counted(most, "position") + ", needed " +
                 (run.minImages == 1 ? "is " : "are ") + std::to_string(run.minImages) + "; " +
                 foundText(camera);
  finding.advice =
      camera.imagesFound == 0
          ? "look at the images of " + inQuotes(camera.id) +
                ": is the whole board in them, sharp, evenly lit, and of the size that was given?"
          : "take more images with the board where both " + pair +
                " see it, or where the camera and any other linked one do";
  return finding;
}

void checkGroups(const StitchRecord& run, Findings& findings) {
  const std::vector<std::size_t> group = linkedGroups(run);
  const std::size_t main = mainGroup(run, group);
  for (std::size_t i = 0; i < group.size(); ++i)
    if (group[i] != main) findings.push_back(unlinkedFinding(run, group, i, main));
}

void checkWeakLinks(const StitchRecord& run, Findings& findings) {
  for (const CameraRecord& camera : run.cameras) {
    if (camera.parent.empty() || camera.imagesShared >= kGoodLink) continue;
    const std::string pair = inQuotes(camera.id) + " and " + inQuotes(camera.parent);
    Finding finding;
    finding.weight = camera.imagesShared < 2 ? Weight::kProblem : Weight::kCaution;
    finding.text = pair + " are linked by " + counted(camera.imagesShared, "board position") +
                   (camera.imagesShared < 2 ? ", which nothing confirms" : " only");
    finding.advice = "take images of at least " + std::to_string(kGoodLink) +
                     " board positions that both " + pair + " see, better of 10";
    findings.push_back(finding);
  }
}

} // namespace

Findings checkLinks(const StitchRecord& run) {
  Findings findings;
  const bool hasShots =
      std::any_of(run.cameras.begin(), run.cameras.end(),
                  [](const CameraRecord& camera) { return !camera.shots.empty(); });
  if (hasShots) checkGroups(run, findings);
  checkWeakLinks(run, findings);
  return findings;
}

} // namespace velmorn::tool
