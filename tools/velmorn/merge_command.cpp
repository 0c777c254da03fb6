// `velmorn merge`: the clouds of several depth cameras as one.
#include "velmorn/merge_command.h"

#include <filesystem>
#include <iostream>
#include <numeric>
#include <utility>
#include <vector>

#include "velmorn/atomic_file.h"
#include "velmorn/grey_image.h"
#include "velmorn/merge_images.h"
#include "velmorn/merge_job.h"
#include "velmorn/ply_writer.h"
#include "velmorn/progress.h"
#include "velmorn/round_numbers.h"
#include "velmorn/seam_check.h"
#include "velmorn/seam_table.h"
#include "velmorn/tool_error.h"
#include "velmorn/voxel_grid.h"

namespace velmorn::tool {
namespace {

struct MergeSummary {
  std::vector<std::size_t> pointsOf; // by camera, before thinning
  std::uint64_t written = 0;
  std::vector<Seam> seams;

  std::size_t points() const {
    return std::accumulate(pointsOf.begin(), pointsOf.end(), std::size_t{0});
  }
};

std::vector<std::string> idsOf(const MergeJob& job) {
  std::vector<std::string> ids;
  for (const MergeJobCamera& camera : job.cameras) ids.push_back(camera.id);
  return ids;
}

std::vector<std::string> headerComments(const MergeJob& job) {
  std::vector<std::string> comments = {"frame " + job.frameName};
  for (std::size_t i = 0; i < job.cameras.size(); ++i) {
    comments.push_back("camera " + std::to_string(i) + ' ' + job.cameras[i].id);
  }
  return comments;
}

// The points on their way to the file, thinned when the job asks for it.
class CloudSink {
 public:
  CloudSink(const MergeJob& job, PlyWriter& file) : file_(file) {
    if (job.voxel) grid_.emplace(*job.voxel);
  }

  void take(const std::vector<CloudPoint>& points) {
    for (const CloudPoint& point : points) {
      const bool isThinned = grid_ && grid_->add(point);
      if (!isThinned) file_.add(point);
    }
  }

  void finish() {
    if (grid_) grid_->forEach([&](const CloudPoint& point) { file_.add(point); });
    grid_.reset();
  }

 private:
  PlyWriter& file_;
  std::optional<VoxelGrid> grid_;
};

// Adds one camera's points and returns what the seams need of it.
SeamCamera addCamera(const MergeJob& job, std::size_t index, CloudSink& sink,
                     MergeSummary& summary) {
  const MergeJobCamera& source = job.cameras[index];
  CloudCamera camera = readMergeCamera(job, index);
  const std::size_t points =
      liftCamera(camera, [&](const std::vector<CloudPoint>& row) { sink.take(row); });
  summary.pointsOf.push_back(points);
  printProgress(index + 1, job.cameras.size(), source.id + " " + fileName(source.depthPath),
                sizeText(camera.view.counts.size()) + ", " + counted(points, "point"));
  return {std::move(camera.view), source.baseFromCam};
}

void warnAboutSeams(const std::vector<Seam>& seams, const std::vector<std::string>& ids) {
  for (const Seam& seam : seams) {
    if (!seam.overlaps() || seam.agrees()) continue;
    printWarning("cameras " + inQuotes(ids[seam.first]) + " and " + inQuotes(ids[seam.second]) +
                 " look at one place, but their surfaces there do not lie together");
  }
}

void printSummary(const MergeOptions& options, const MergeJob& job, const MergeSummary& summary) {
  const std::vector<std::string> ids = idsOf(job);
  std::cout << "points      " << summary.points() << '\n';
  for (std::size_t i = 0; i < ids.size(); ++i) {
    std::cout << "  of " << inQuotes(ids[i]) << ": " << summary.pointsOf[i] << '\n';
  }
  if (job.voxel) {
    std::cout << "thinned to  " << summary.written << ", voxels of " << shortNumberText(*job.voxel)
              << '\n';
  }
  std::cout << "frame       " << job.frameName << '\n'
            << "written to  " << oneLine(options.output) << '\n';
  if (!options.seams.empty()) std::cout << "seams to    " << oneLine(options.seams) << '\n';
  if (!summary.seams.empty()) std::cout << '\n' << seamTable(summary.seams, ids);
}

MergeJob readJob(const MergeOptions& options) {
  MergeJob job = std::filesystem::is_directory(options.job)
                     ? readMergeFolder(options.job, options.result)
                     : readMergeJob(options.job);
  if (options.voxel) job.voxel = options.voxel;
  return job;
}

} // namespace

void runMerge(const MergeOptions& options) {
  const MergeJob job = readJob(options);
  if (!options.seams.empty()) requireWritable(options.seams);
  PlyWriter file(options.output, headerComments(job));
  CloudSink sink(job, file);
  MergeSummary summary;
  std::vector<SeamCamera> cameras;
  for (std::size_t i = 0; i < job.cameras.size(); ++i) {
    cameras.push_back(addCamera(job, i, sink, summary));
  }
  if (summary.points() == 0) throw ToolError("no camera of " + options.job + " has a point");
  sink.finish();
  summary.written = file.size();
  summary.seams = checkSeams(cameras);
  warnAboutSeams(summary.seams, idsOf(job));
  if (!options.seams.empty()) {
    writeFileAtomically(options.seams, seamFileText(summary.seams, idsOf(job)));
  }
  file.commit();
  printSummary(options, job, summary);
}

} // namespace velmorn::tool
