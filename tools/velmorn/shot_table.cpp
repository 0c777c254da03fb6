// The cameras and their shots as tables of an HTML page.
#include "velmorn/shot_table.h"

#include <optional>
#include <vector>

#include "velmorn/coverage.h"
#include "velmorn/html_text.h"
#include "velmorn/pose.h"
#include "velmorn/report_figures.h"
#include "velmorn/report_style.h"

namespace velmorn::tool {
namespace {

constexpr const char* kNothing = "–";

std::string numberCell(const std::string& text) { return "<td class=\"number\">" + text + "</td>"; }

std::string numberCell(const std::optional<double>& value, int decimals) {
  return numberCell(value ? htmlNumber(*value, decimals) : kNothing);
}

std::string headRow(const std::vector<std::string>& textColumns,
                    const std::vector<std::string>& numberColumns) {
  std::string html = "<thead><tr>";
  for (const std::string& name : textColumns) html += "<th scope=\"col\">" + name + "</th>";
  for (const std::string& name : numberColumns)
    html += "<th scope=\"col\" class=\"number\">" + name + "</th>";
  return html + "</tr></thead>\n";
}

std::string linkText(const CameraRecord& camera) {
  if (camera.isBase) return "(base)";
  return camera.parent.empty() ? "not linked" : "<bdi>" + htmlText(camera.parent) + "</bdi>";
}

std::optional<double> residualOf(const CameraRecord& camera) {
  return camera.isBase ? std::nullopt : camera.residual;
}

std::string placeCells(const CameraRecord& camera) {
  if (!camera.baseFromCam) {
    std::string cells;
    for (int i = 0; i < 5; ++i) cells += numberCell(std::nullopt, 0);
    return cells;
  }
  const cv::Vec3d position = translationOf(*camera.baseFromCam);
  return numberCell(rotationDegrees(*camera.baseFromCam), 3) + numberCell(position[0], 3) +
         numberCell(position[1], 3) + numberCell(position[2], 3) +
         numberCell(cv::norm(position), 3);
}

std::string cameraRow(const CameraRecord& camera, std::size_t index) {
  const Coverage coverage = coverageOf(camera);
  const bool hasMap = !coverage.shots.empty() && !camera.shots.empty();
  return "<tr><th scope=\"row\"><a href=\"#camera-" + std::to_string(index + 1) +
         "\"><span class=\"swatch " + cameraClass(index) + "\"></span><bdi>" + htmlText(camera.id) +
         "</bdi></a></th><td>" + linkText(camera) + "</td>" +
         numberCell(camera.isBase ? kNothing : std::to_string(camera.imagesShared)) +
         numberCell(residualOf(camera), 4) +
         numberCell(std::to_string(camera.imagesFound) + " / " +
                    std::to_string(camera.imagesTotal)) +
         numberCell(reprojectionRms(camera), 3) +
         numberCell(hasMap ? htmlNumber(coverage.percent, 0) + " %" : kNothing) +
         placeCells(camera) + "</tr>\n";
}

std::string shotRow(const std::string& folder, const ShotRecord& shot, std::size_t index) {
  const std::string outcome = shot.found() ? "used" : "refused: " + refusalText(shot);
  const std::optional<double> error =
      shot.found() ? std::optional(shot.reprojectionError) : std::nullopt;
  const std::string corners = shot.found() ? std::to_string(shot.corners.size()) : kNothing;
  return std::string(shot.found() ? "<tr>" : "<tr class=\"refused\">") + "<th scope=\"row\">" +
         std::to_string(index + 1) + "</th><td><bdi>" + htmlText(shownPath(folder, shot.image)) +
         "</bdi></td><td>" + htmlText(outcome) + "</td>" + numberCell(corners) +
         numberCell(error, 3) + "</tr>\n";
}

} // namespace

std::string cameraTable(const StitchRecord& record) {
  std::string html =
      "<table>\n<caption>The cameras. Rotation, position and distance are of each camera in the "
      "base camera's frame.</caption>\n" +
      headRow({"Camera", "Linked to"},
              {"Shared shots", "Residual", "Shots used", "Reprojection error [px]", "Image covered",
               "Rotation [°]", "x", "y", "z", "Distance"}) +
      "<tbody>\n";
  for (std::size_t i = 0; i < record.cameras.size(); ++i) html += cameraRow(record.cameras[i], i);
  return html + "</tbody></table>\n";
}

std::string shotTable(const StitchRecord& record, const CameraRecord& camera) {
  if (camera.shots.empty()) return "";
  std::string html =
      "<table>\n<caption>The shots of <bdi>" + htmlText(camera.id) + "</bdi></caption>\n" +
      headRow({"Shot", "Image", "Outcome"}, {"Corners", "Reprojection error [px]"}) + "<tbody>\n";
  for (std::size_t i = 0; i < camera.shots.size(); ++i)
    html += shotRow(record.folder, camera.shots[i], i);
  return html + "</tbody></table>\n";
}

} // namespace velmorn::tool
