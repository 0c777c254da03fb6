// Makes the input of an aerial view: what two depth cameras over a conveyor belt see.
//
//   conveyor_scene FOLDER
//   velmorn aerial FOLDER/aerial.json
//
// Writes the images, the camera files, a result file with the cameras' true places as `velmorn
// stitch` would find them, two job files (aerial.json with colour images, aerial-depth.json
// without) and cameras.png, the colour images side by side. Millimetres. Exit status 0, 1 when a
// file cannot be written, 2 for a wrong command line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "parcels.h"
#include "velmorn/atomic_file.h"
#include "velmorn/json_text.h"
#include "velmorn/pose.h"
#include "velmorn/result_file.h"
#include "velmorn/scene_render.h"
#include "velmorn/tool_error.h"

namespace {

using namespace velmorn::tool;
using Folder = std::filesystem::path;

// The measured region in cam1's frame: the belt with its rails, as far as both cameras see it.
const std::vector<int> kRegion = {-920, -560, 1430, 560};
// Millimetres per cell. False colours are coarser: the depth's noise shows less.
constexpr int kColorResolution = 2;
constexpr int kDepthResolution = 3;

// Smooth edges; no noise, which would only make the files large.
const ColorEffects kColorEffects = {2, 0, 1};

DepthEffects depthEffects(std::uint64_t seed) {
  DepthEffects effects;
  effects.noiseSigma = 0.4;
  effects.holeShare = 0.001;
  effects.edgeHeight = 15;
  effects.seed = seed;
  return effects;
}

void writeImage(const Folder& path, const cv::Mat& image) {
  std::vector<unsigned char> bytes;
  cv::imencode(".png", image, bytes, {cv::IMWRITE_PNG_COMPRESSION, 6});
  writeFileAtomically(path.string(), std::string(bytes.begin(), bytes.end()));
}

// Returns the colour image.
cv::Mat writeImages(const Folder& folder, const NamedCamera& named, std::uint64_t seed) {
  const Scene scene = parcelsOnBelt();
  const cv::Mat depth = renderDepth(scene, named.camera, depthEffects(seed));
  cv::Mat color = renderColor(scene, named.camera, kColorEffects);
  writeImage(folder / (named.id + "-depth.png"), depth);
  writeImage(folder / (named.id + "-color.png"), color);
  return color;
}

// The cameras' views side by side, to look at.
void writeOverview(const Folder& path, const std::vector<cv::Mat>& views) {
  constexpr double kScale = 0.5;
  cv::Mat strip, overview;
  cv::hconcat(views, strip);
  cv::resize(strip, overview, cv::Size(), kScale, kScale, cv::INTER_AREA);
  writeImage(path, overview);
}

void writeCameraFile(const Folder& folder, const NamedCamera& named) {
  const CameraModel& model = named.camera.model;
  Calibration calibration;
  calibration.imageSize = model.imageSize;
  calibration.cameraMatrix = cv::Mat(cv::Matx33d(model.intrinsic.matrix));
  calibration.distortion = cv::Mat(cv::Matx<double, 1, 12>(model.distortion.coeffs));
  writeFileAtomically((folder / (named.id + ".yml")).string(), cameraFileText(calibration));
}

// The first camera is the base, the others are linked to it.
StitchedRig trueRig(const std::vector<NamedCamera>& cameras) {
  StitchedRig rig;
  const NamedCamera& base = cameras.front();
  for (const NamedCamera& named : cameras) {
    StitchedCamera stitched;
    stitched.id = named.id;
    if (named.id != base.id) {
      stitched.place.parent = base.id;
      stitched.place.depth = 1;
      stitched.place.baseFromCam =
          inversePose(base.camera.worldFromCam) * named.camera.worldFromCam;
      stitched.place.camFromBase = inversePose(stitched.place.baseFromCam);
    }
    std::copy_n(stitched.place.camFromBase.val, 16, stitched.libraryEntry.data);
    rig.cameras.push_back(stitched);
  }
  return rig;
}

// No board was looked at: its size and the numbers of images are 0.
void writeResult(const Folder& folder, const std::vector<NamedCamera>& cameras) {
  writeFileAtomically((folder / "result.json").string(), resultText(Rig(), trueRig(cameras)));
}

void writeJob(const Folder& path, const std::vector<NamedCamera>& cameras, bool withColor) {
  nlohmann::ordered_json job;
  job["region"] = kRegion;
  job["resolution"] = withColor ? kColorResolution : kDepthResolution;
  job["result"] = "result.json";
  for (const NamedCamera& named : cameras) {
    nlohmann::ordered_json camera;
    camera["id"] = named.id;
    camera["depth"] = named.id + "-depth.png";
    if (withColor) camera["color"] = named.id + "-color.png";
    camera["intrinsics"] = named.id + ".yml";
    job["cameras"].push_back(camera);
  }
  writeFileAtomically(path.string(), fileText(job));
}

void writeAll(const Folder& folder) {
  const std::vector<NamedCamera> cameras = camerasOverBelt();
  std::filesystem::create_directories(folder);
  std::vector<cv::Mat> views;
  std::uint64_t seed = 20;
  for (const NamedCamera& named : cameras) {
    views.push_back(writeImages(folder, named, seed));
    writeCameraFile(folder, named);
    ++seed;
  }
  writeOverview(folder / "cameras.png", views);
  writeResult(folder, cameras);
  writeJob(folder / "aerial.json", cameras, true);
  writeJob(folder / "aerial-depth.json", cameras, false);
}

} // namespace

int main(int argc, char** argv) {
  std::string folder;
  CLI::App app("Renders a conveyor belt with parcels under two depth cameras");
  app.add_option("folder", folder, "Folder to write into, made when it is not there")->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    writeAll(folder);
    std::cout << "written: " << folder << '\n';
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "conveyor_scene: " << oneLine(error.what()) << '\n';
    return 1;
  }
}
