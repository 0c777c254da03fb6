// `velmorn report`: the outcome of a stitching run as a page.
#include "velmorn/report_command.h"

#include <iostream>

#include "velmorn/aerial_picture.h"
#include "velmorn/atomic_file.h"
#include "velmorn/coloured_cloud.h"
#include "velmorn/progress.h"
#include "velmorn/report_data.h"
#include "velmorn/report_figures.h"
#include "velmorn/report_page.h"
#include "velmorn/tool_error.h"
#include "velmorn/top_view_svg.h"

namespace velmorn::tool {
namespace {

std::string cloudNote(const ColouredCloud& shown) {
  if (shown.read == 0) return "";
  const std::string all = counted(shown.read, "point");
  if (shown.points.size() == shown.read) return "The merged cloud has " + all + ". ";
  return "The merged cloud has " + all + ", of which " + std::to_string(shown.points.size()) +
         " are shown. ";
}

ReportModel modelOf(const ReportOptions& options, const StitchRecord& record) {
  try {
    return reportModel(record);
  } catch (const ToolError& error) {
    throw ToolError(options.result + ": " + error.what());
  }
}

std::vector<std::vector<ShotPicture>> picturesOf(const StitchRecord& record) {
  std::size_t total = 0;
  for (const CameraRecord& camera : record.cameras) total += camera.shots.size();
  std::size_t number = 0;
  const auto report = [&](const CameraRecord& camera, const ShotRecord& shot,
                          const ShotPicture& picture) {
    printProgress(++number, total, camera.id + " " + fileName(shot.image),
                  picture.problem.empty() ? "picture taken in" : "picture " + picture.problem);
  };
  return shotPictures(record, {}, report);
}

std::size_t pictureCount(const ReportPage& page) {
  std::size_t count = 0;
  for (const auto& pictures : page.pictures)
    for (const ShotPicture& picture : pictures) count += picture.problem.empty() ? 1 : 0;
  return count;
}

void printSummary(const ReportOptions& options, const StitchRecord& record,
                  const ReportPage& page) {
  std::cout << "cameras     " << placedCameras(record) << " of " << record.cameras.size()
            << " with a place\n"
            << "pictures    " << pictureCount(page) << '\n'
            << "written to  " << oneLine(options.output) << '\n';
}

} // namespace

void runReport(const ReportOptions& options) {
  const StitchRecord record = readStitchRecord(options.result);
  requireWritable(options.output);
  ColouredCloud cloud;
  if (!options.cloud.empty()) cloud = thinned(readColouredCloud(options.cloud), kMostCloudPoints);
  const ReportModel model = modelOf(options, record);
  const ReportFrame frame = reportFrame(model, cloud);

  ReportPage page;
  page.title = options.title;
  page.resultName = fileName(options.result);
  if (!model.cameras.empty()) page.topView = topViewSvg(record, model, frame);
  page.data = reportData(record, model, frame, cloud);
  page.cloudNote = cloudNote(cloud);
  if (!options.aerial.empty()) {
    page.aerialName = fileName(options.aerial);
    page.aerialAddress = aerialAddress(options.aerial);
  }
  page.pictures = picturesOf(record);
  writeFileAtomically(options.output, reportHtml(record, page));
  printSummary(options, record, page);
}

} // namespace velmorn::tool
