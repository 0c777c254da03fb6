// Why a stitching run failed.
#include "velmorn/link_diagnosis.h"

#include <algorithm>
#include <sstream>

#include "velmorn/camera_links.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// `"left" 2, "right" 0`: board views that the camera shares with each of the others.
std::string sharedViewsList(const Rig& rig, const RigCamera& camera, const OutcomeMap& outcomes) {
  std::string list;
  for (const RigCamera& other : rig.cameras) {
    if (&other == &camera) continue;
    if (!list.empty()) list += ", ";
    list += inQuotes(other.id) + " " +
            std::to_string(sharedViews(outcomes.at(camera.id), outcomes.at(other.id)));
  }
  return list;
}

bool sharesEnough(const Rig& rig, const RigCamera& camera, const OutcomeMap& outcomes) {
  return std::any_of(rig.cameras.begin(), rig.cameras.end(), [&](const RigCamera& other) {
    return &other != &camera &&
           sharedViews(outcomes.at(camera.id), outcomes.at(other.id)) >= rig.minImages;
  });
}

// The images of the camera with the outcome: how many, and the first one's path.
std::string imagesWith(const RigCamera& camera, const OutcomeMap& outcomes, ImageOutcome outcome,
                       const std::string& problem) {
  const std::vector<ImageOutcome>& all = outcomes.at(camera.id);
  const auto first = std::find(all.begin(), all.end(), outcome);
  if (first == all.end()) return "";
  const auto number = static_cast<std::size_t>(std::count(all.begin(), all.end(), outcome));
  const auto index = static_cast<std::size_t>(first - all.begin());
  return "; " + counted(number, "image") + " of it " + problem + " (" +
         (number > 1 ? "such as " : "") + camera.images[index] + ")";
}

std::string reasonFor(const Rig& rig, const RigCamera& camera, const OutcomeMap& outcomes) {
  std::string reason = "camera " + inQuotes(camera.id) + " could not be linked: ";
  if (sharesEnough(rig, camera, outcomes)) {
    reason +=
        "it shares enough board views with some cameras, but no chain of them leads to the "
        "base or the board's pose could not be computed; ";
  }
  reason += "board views shared with " + sharedViewsList(rig, camera, outcomes) + ", needed " +
            std::to_string(rig.minImages);
  reason += imagesWith(camera, outcomes, ImageOutcome::kNotLoaded, "could not be loaded");
  reason +=
      imagesWith(camera, outcomes, ImageOutcome::kWrongSize, "had another size than the first one");
  if (rig.hasDataCodes)
    reason += imagesWith(camera, outcomes, ImageOutcome::kNoBoard, "gave no pose of the board");
  return reason;
}

} // namespace

std::vector<const RigCamera*> unlinkedCameras(const Rig& rig, const StitchMessages& messages) {
  std::vector<std::string> lines;
  std::istringstream rest(messages.rest());
  for (std::string line; std::getline(rest, line);) lines.push_back(line);

  std::vector<const RigCamera*> unlinked;
  for (const RigCamera& camera : rig.cameras) {
    const std::string message = "failed to get camera " + camera.id + " RT";
    if (std::find(lines.begin(), lines.end(), message) != lines.end()) unlinked.push_back(&camera);
  }
  return unlinked;
}

std::string failureReason(const Rig& rig, const StitchMessages& messages, int status) {
  const std::vector<const RigCamera*> unlinked = unlinkedCameras(rig, messages);
  if (unlinked.empty()) {
    return "the library refused the run with status " + std::to_string(status) +
           (messages.rest().empty() ? "" : ": " + oneLine(messages.rest()));
  }
  return unlinkedReason(rig, unlinked, messages.outcomes());
}

std::string unlinkedReason(const Rig& rig, const std::vector<const RigCamera*>& unlinked,
                           const OutcomeMap& outcomes) {
  std::string reason = reasonFor(rig, *unlinked.front(), outcomes);
  for (std::size_t i = 1; i < unlinked.size(); ++i) {
    reason += (i == 1 ? "; nor could " : ", ") + inQuotes(unlinked[i]->id);
  }
  return reason;
}

} // namespace velmorn::tool
