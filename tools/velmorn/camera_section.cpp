// What the report's page says of one camera.
#include "velmorn/camera_section.h"

#include "velmorn/coverage.h"
#include "velmorn/coverage_svg.h"
#include "velmorn/error_bars_svg.h"
#include "velmorn/grey_image.h"
#include "velmorn/html_text.h"
#include "velmorn/pose.h"
#include "velmorn/report_figures.h"
#include "velmorn/report_style.h"
#include "velmorn/shot_table.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

std::string fact(const std::string& name, const std::string& value) {
  return "<div><dt>" + name + "</dt><dd>" + value + "</dd></div>\n";
}

std::string linkFacts(const CameraRecord& camera) {
  if (camera.isBase) return fact("Linked to", "base of the rig");
  if (camera.parent.empty()) return fact("Linked to", "not linked");
  return fact("Linked to", "<bdi>" + htmlText(camera.parent) + "</bdi>, " +
                               counted(camera.imagesShared, "shared shot")) +
         fact("Residual", camera.residual ? htmlNumber(*camera.residual, 4) : "none");
}

std::string placeFacts(const CameraRecord& camera) {
  if (camera.isBase || !camera.baseFromCam) return "";
  return fact("Distance to base", htmlNumber(cv::norm(translationOf(*camera.baseFromCam)), 3)) +
         fact("Rotation", htmlNumber(rotationDegrees(*camera.baseFromCam), 3) + "°");
}

std::string lensFacts(const std::string& folder, const CameraRecord& camera) {
  std::string html;
  if (camera.imageSize.area() > 0) html += fact("Images", sizeText(camera.imageSize) + " px");
  if (camera.intrinsics)
    html += fact("Camera file",
                 "<bdi>" + htmlText(shownPath(folder, camera.intrinsics->file)) + "</bdi>");
  return html;
}

std::string facts(const std::string& folder, const CameraRecord& camera) {
  std::string html = "<dl class=\"facts\">\n" + linkFacts(camera) + placeFacts(camera);
  html += fact("Shots used",
               std::to_string(camera.imagesFound) + " of " + std::to_string(camera.imagesTotal));
  if (const std::optional<double> rms = reprojectionRms(camera))
    html += fact("Reprojection error", htmlNumber(*rms, 3) + " px");
  return html + lensFacts(folder, camera) + "</dl>\n";
}

std::string chart(const std::string& svg, const std::string& caption) {
  if (svg.empty()) return "";
  return "<figure><div class=\"scroll\">" + svg + "</div><figcaption>" + caption +
         "</figcaption></figure>\n";
}

std::string charts(const CameraRecord& camera, double errorScale) {
  if (camera.shots.empty()) {
    return "<p class=\"remark\">The result file says nothing about the single shots.</p>\n";
  }
  const Coverage coverage = coverageOf(camera);
  return "<div class=\"charts\">\n" +
         chart(errorBarsSvg(camera, errorScale),
               "Reprojection error of each shot, pixels. A cross is a refused shot.") +
         chart(coverageSvg(camera, coverage),
               "The board covered " + htmlNumber(coverage.percent, 0) +
                   " % of the image; darker where more shots did. Dots are corners.") +
         "</div>\n";
}

std::string refusals(const std::string& folder, const CameraRecord& camera) {
  std::string items;
  for (std::size_t i = 0; i < camera.shots.size(); ++i) {
    const ShotRecord& shot = camera.shots[i];
    if (shot.found()) continue;
    items += "<li>Shot " + std::to_string(i + 1) + ", <bdi>" +
             htmlText(shownPath(folder, shot.image)) + "</bdi>: " + htmlText(refusalText(shot)) +
             "</li>\n";
  }
  if (items.empty()) return "";
  return "<h4>Refused shots</h4>\n<ul class=\"refusals\">\n" + items + "</ul>\n";
}

std::string image(const std::string& jpeg, const std::string& kind, const std::string& alt) {
  return "<img class=\"" + kind + "\" alt=\"" + alt + "\" decoding=\"async\" " +
         "src=\"data:image/jpeg;base64," + jpeg + "\">";
}

std::string pictureNote(const ShotRecord& shot) {
  return shot.found() ? htmlNumber(shot.reprojectionError, 3) + " px" : refusalText(shot);
}

std::string pictureHtml(const CameraRecord& camera, std::size_t index, const ShotPicture& picture) {
  const ShotRecord& shot = camera.shots[index];
  const std::string name = "Shot " + std::to_string(index + 1);
  const std::string alt = htmlText(name + " of " + camera.id + ", " +
                                   counted(shot.corners.size(), "corner") + " marked");
  const std::string label =
      "<span class=\"label\"><b>" + name + "</b> " + htmlText(pictureNote(shot)) + "</span>";
  if (!picture.problem.empty()) {
    return "<div class=\"picture none\"><p>Picture " + htmlText(picture.problem) + "</p>" + label +
           "</div>\n";
  }
  const std::string small = image(picture.thumbnail, "small", alt) + label;
  if (picture.large.empty()) return "<div class=\"picture\">" + small + "</div>\n";
  return "<details class=\"picture\"><summary>" + small + "</summary>" +
         image(picture.large, "large", alt + ", larger") + "</details>\n";
}

std::string picturesHtml(const CameraRecord& camera, const std::vector<ShotPicture>& pictures) {
  if (pictures.empty()) return "";
  std::string html =
      "<h4>Pictures</h4>\n<p class=\"remark\">The corners that were used; a ring is around the "
      "first one. <span class=\"on-screen\">Click a picture for a larger one.</span></p>\n<div "
      "class=\"pictures\">\n";
  for (std::size_t i = 0; i < pictures.size(); ++i) html += pictureHtml(camera, i, pictures[i]);
  return html + "</div>\n";
}

std::string shotsHtml(const StitchRecord& record, const CameraRecord& camera) {
  if (camera.shots.empty()) return "";
  return "<details class=\"shots\"><summary>Table of " + counted(camera.shots.size(), "shot") +
         "</summary>\n<div class=\"scroll\">" + shotTable(record, camera) + "</div></details>\n";
}

} // namespace

std::string cameraSection(const StitchRecord& record, std::size_t index,
                          const std::vector<ShotPicture>& pictures, double errorScale) {
  const CameraRecord& camera = record.cameras[index];
  return "<section class=\"camera\" id=\"camera-" + std::to_string(index + 1) +
         "\">\n<h3><span class=\"swatch " + cameraClass(index) + "\"></span><bdi>" +
         htmlText(camera.id) + "</bdi>" +
         (camera.isBase ? " <span class=\"tag\">base</span>" : "") + "</h3>\n" +
         facts(record.folder, camera) + charts(camera, errorScale) +
         refusals(record.folder, camera) + shotsHtml(record, camera) +
         picturesHtml(camera, pictures) + "</section>\n";
}

} // namespace velmorn::tool
