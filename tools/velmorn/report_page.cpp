// The report as one HTML page.
#include "velmorn/report_page.h"

#include <charconv>

#include "velmorn/camera_section.h"
#include "velmorn/embedded_text.h"
#include "velmorn/error_bars_svg.h"
#include "velmorn/html_text.h"
#include "velmorn/relation_tree_svg.h"
#include "velmorn/report_figures.h"
#include "velmorn/round_numbers.h"
#include "velmorn/shot_table.h"
#include "velmorn/tool_error.h"
#include "velmorn64.h"

namespace velmorn::tool {
namespace {

std::string textOf(const EmbeddedText& embedded) { return std::string(embedded.text); }

// 'sha256-...' of a content security policy.
std::string policySource(const EmbeddedText& embedded) {
  std::string bytes;
  for (std::size_t i = 0; i < embedded.sha256.size(); i += 2) {
    unsigned byte = 0;
    std::from_chars(embedded.sha256.data() + i, embedded.sha256.data() + i + 2, byte, 16);
    bytes += static_cast<char>(byte);
  }
  return " 'sha256-" + base64Text(bytes) + "'";
}

std::vector<EmbeddedText> scripts() {
  return {threeScript(), orbitScript(), reportSceneScript(), reportViewScript(),
          reportPageScript()};
}

std::string policy() {
  std::string sources;
  for (const EmbeddedText& script : scripts()) sources += policySource(script);
  return "default-src 'none'; base-uri 'none'; form-action 'none'; img-src data:; style-src" +
         policySource(reportStyle()) + "; script-src" + sources;
}

std::string head(const ReportPage& page) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
         policy() +
         "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n"
         "<meta name=\"generator\" content=\"velmorn " VELMORN64_VERSION "\">\n<title>" +
         htmlText(page.title) + "</title>\n<style>" + textOf(reportStyle()) + "</style>\n</head>\n";
}

std::string boardText(const StitchRecord& record) {
  const std::string square =
      record.square > 0 ? ", square " + shortNumberText(record.square) : std::string();
  if (record.hasDataCodes) return "board with data codes" + square;
  return "board " + std::to_string(record.board.width) + "x" + std::to_string(record.board.height) +
         square;
}

std::string figureCard(const std::string& name, const std::string& value, const std::string& unit) {
  return "<div><dt>" + name + "</dt><dd>" + value + " <small>" + unit + "</small></dd></div>\n";
}

std::string keyFigures(const StitchRecord& record) {
  const std::optional<double> residual = largestResidual(record);
  const std::optional<double> rms = reprojectionRms(record);
  return "<dl class=\"cards\">\n" +
         figureCard("Cameras with a place", std::to_string(placedCameras(record)),
                    "of " + std::to_string(record.cameras.size())) +
         figureCard("Shots used", std::to_string(shotsUsed(record)),
                    "of " + std::to_string(shotsTotal(record))) +
         figureCard("Largest residual", residual ? htmlNumber(*residual, 4) : "–", "") +
         figureCard("Reprojection error", rms ? htmlNumber(*rms, 3) : "–", rms ? "px" : "") +
         "</dl>\n";
}

std::string failure(const StitchRecord& record) {
  if (record.error.empty()) return "";
  return "<p class=\"failure\" role=\"alert\"><b>The run failed.</b> " + htmlText(record.error) +
         "</p>\n";
}

std::string header(const StitchRecord& record, const ReportPage& page) {
  const std::string base =
      record.base.empty() ? "no base" : "base <bdi>" + htmlText(record.base) + "</bdi>";
  return "<header>\n<h1>" + htmlText(page.title) + "</h1>\n<p class=\"meta\"><bdi>" +
         htmlText(page.resultName) + "</bdi> · " + boardText(record) + " · " + base + "</p>\n" +
         failure(record) + keyFigures(record) + "</header>\n";
}

std::string contents(const ReportPage& page) {
  return "<nav aria-label=\"Contents\"><a href=\"#rig\">Rig</a> <a href=\"#links\">Links</a> "
         "<a href=\"#cameras\">Cameras</a>" +
         std::string(page.aerialName.empty() ? "" : " <a href=\"#aerial\">From above</a>") +
         " <a href=\"#notes\">Notes</a></nav>\n";
}

// The controls appear with the view that they belong to.
std::string rigSection(const ReportPage& page) {
  if (page.topView.empty()) {
    return "<section id=\"rig\">\n<h2>Rig</h2>\n<p>No camera has a place.</p>\n</section>\n";
  }
  return "<section id=\"rig\">\n<h2>Rig</h2>\n<figure>\n"
         "<div id=\"controls\" class=\"controls\" hidden></div>\n"
         "<div id=\"stage\" class=\"stage\" hidden></div>\n"
         "<div id=\"top-view\" class=\"scroll\">" +
         page.topView +
         "</div>\n<noscript><p class=\"remark\">The view in three dimensions needs JavaScript; "
         "this is the rig from above.</p></noscript>\n"
         "<p id=\"view-problem\" class=\"remark\" hidden></p>\n<figcaption>Cameras with their "
         "lines of sight, and the board as each of them saw it, in the base camera's frame. " +
         page.cloudNote +
         "<span id=\"view-help\" class=\"on-screen\" hidden></span></figcaption>\n</figure>\n" +
         "</section>\n";
}

std::string linksSection(const StitchRecord& record) {
  return "<section id=\"links\">\n<h2>Links</h2>\n<figure><div class=\"scroll\">" +
         relationTreeSvg(record) +
         "</div><figcaption>Every camera is linked to the one on its left by shots of the same "
         "board positions. The residual is how far the board's corners, as the two cameras place "
         "them, are apart after the fit.</figcaption></figure>\n</section>\n";
}

std::string camerasSection(const StitchRecord& record, const ReportPage& page) {
  std::string html =
      "<section id=\"cameras\">\n<h2>Cameras</h2>\n<div class=\"scroll\" role=\"region\" "
      "aria-label=\"Table of the cameras\" tabindex=\"0\">" +
      cameraTable(record) + "</div>\n";
  const double scale = errorScale(record);
  for (std::size_t i = 0; i < record.cameras.size(); ++i)
    html += cameraSection(record, i, page.pictures[i], scale);
  return html + "</section>\n";
}

std::string aerialSection(const ReportPage& page) {
  if (page.aerialName.empty()) return "";
  const std::string name = htmlText(page.aerialName);
  return "<section id=\"aerial\">\n<h2>From above</h2>\n<figure><img class=\"aerial\" "
         "alt=\"What the depth cameras see from above\" src=\"" +
         page.aerialAddress + "\"><figcaption>What the depth cameras see from above: <bdi>" + name +
         "</bdi></figcaption></figure>\n</section>\n";
}

std::string notesSection() {
  return "<section id=\"notes\">\n<h2>Notes</h2>\n<ul>\n"
         "<li>Lengths are in the unit of the board's square, normally millimetres.</li>\n"
         "<li>Rotation and position are of <code>baseFromCam</code>, which carries points from a "
         "camera's frame into the base camera's: x right, y down, z along the line of sight.</li>\n"
         "<li>The reprojection error is the root mean square distance between the corners found "
         "and those of the board's pose in the same shot, in pixels.</li>\n"
         "<li>The board covers the parts of an image that lie within the outermost corners of a "
         "used shot.</li>\n</ul>\n"
         "<details class=\"licence\"><summary>Made by velmorn " VELMORN64_VERSION
         "; licence of three.js, which this page contains</summary>\n<pre>" +
         textOf(threeLicence()) + "</pre></details>\n</section>\n";
}

std::string scriptElements(const ReportPage& page) {
  std::string html = "<script type=\"application/json\" id=\"rig-data\">" +
                     jsonInScript(page.data) + "</script>\n";
  for (const EmbeddedText& script : scripts()) html += "<script>" + textOf(script) + "</script>\n";
  return html;
}

} // namespace

std::string reportHtml(const StitchRecord& record, const ReportPage& page) {
  return head(page) + "<body>\n" + header(record, page) + contents(page) + "<main>\n" +
         rigSection(page) + linksSection(record) + camerasSection(record, page) +
         aerialSection(page) + notesSection() + "</main>\n" + scriptElements(page) +
         "</body>\n</html>\n";
}

} // namespace velmorn::tool
