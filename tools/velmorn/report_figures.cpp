// The numbers that a report gives of a run.
#include "velmorn/report_figures.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace velmorn::tool {
namespace {

struct SquareSum {
  double sum = 0;
  double count = 0;

  void add(const CameraRecord& camera) {
    for (const ShotRecord& shot : camera.shots) {
      if (!shot.found() || !std::isfinite(shot.reprojectionError)) continue;
      const auto corners = static_cast<double>(shot.corners.size());
      sum += corners * shot.reprojectionError * shot.reprojectionError;
      count += corners;
    }
  }

  std::optional<double> root() const {
    if (count == 0) return std::nullopt;
    return std::sqrt(sum / count);
  }
};

std::string outcomeText(const std::string& outcome) {
  if (outcome == "no-board") return "no board found";
  if (outcome == "not-loaded") return "the image could not be loaded";
  if (outcome == "wrong-size") return "other size than the camera's first image";
  return outcome;
}

} // namespace

std::size_t placedCameras(const StitchRecord& record) {
  return static_cast<std::size_t>(
      std::count_if(record.cameras.begin(), record.cameras.end(),
                    [](const CameraRecord& camera) { return camera.baseFromCam.has_value(); }));
}

std::optional<double> reprojectionRms(const CameraRecord& camera) {
  SquareSum squares;
  squares.add(camera);
  return squares.root();
}

std::optional<double> reprojectionRms(const StitchRecord& record) {
  SquareSum squares;
  for (const CameraRecord& camera : record.cameras) squares.add(camera);
  return squares.root();
}

std::optional<double> largestResidual(const StitchRecord& record) {
  std::optional<double> largest;
  for (const CameraRecord& camera : record.cameras) {
    if (camera.isBase || !camera.residual) continue;
    largest = std::max(*camera.residual, largest.value_or(*camera.residual));
  }
  return largest;
}

std::size_t shotsUsed(const StitchRecord& record) {
  std::size_t used = 0;
  for (const CameraRecord& camera : record.cameras) used += camera.imagesFound;
  return used;
}

std::size_t shotsTotal(const StitchRecord& record) {
  std::size_t total = 0;
  for (const CameraRecord& camera : record.cameras) total += camera.imagesTotal;
  return total;
}

std::string shownPath(const std::string& folder, const std::string& path) {
  return std::filesystem::path(path).lexically_proximate(folder).string();
}

std::string refusalText(const ShotRecord& shot) {
  return shot.detail.empty() ? outcomeText(shot.outcome) : shot.detail;
}

} // namespace velmorn::tool
