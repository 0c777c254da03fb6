// Whether the cameras' intrinsics fit their images.
#include "velmorn/check_lenses.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "velmorn/grey_image.h"
#include "velmorn/lens_refit.h"
#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr double kLargeError = 1.0;  // pixels, of a camera
constexpr double kSmallError = 0.25; // pixels, below which nothing is wrong with a camera
constexpr double kTimesTheOthers = 3;
constexpr double kTimesTheCameras = 4; // of one image against the camera's median
constexpr double kBadImage = 0.5;      // pixels
constexpr double kSureDeviations = 6;
// Of the focal length, or of the image's longer side. A small shift counts with a reprojection
// error that fitting intrinsics lower, a large one by itself.
constexpr double kShift = 0.004;
constexpr double kLargeShift = 0.015;
constexpr double kTimesLower = 1.1;
constexpr double kTimesBetter = 3; // reprojection error of other intrinsics

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

std::string pixelText(double pixels) { return roughNumberText(pixels) + " pixels"; }

std::string intrinsicsOf(const CameraRecord& camera) {
  return camera.intrinsics ? camera.intrinsics->file : "its intrinsics";
}

const std::string kRecalibrate =
    "check that the file is this camera's own and for this resolution, zoom and focus, or make it "
    "anew with velmorn intrinsics";

void checkSize(const CameraRecord& camera, Findings& findings) {
  if (!camera.intrinsics || camera.imageSize.area() == 0) return;
  const cv::Size size = camera.intrinsics->model.imageSize;
  if (size.area() == 0 || size == camera.imageSize) return;
  findings.push_back({Weight::kProblem,
                      "camera " + inQuotes(camera.id) + ": the images are " +
                          sizeText(camera.imageSize) + ", but " + intrinsicsOf(camera) +
                          " is for " + sizeText(size),
                      "give intrinsics for the size of the images: " + kRecalibrate});
}

// The parameter that is off most, in terms of what is allowed.
struct Shift {
  const char* name = "";
  double given = 0;
  double found = 0;
  double part = 0; // of the focal length or of the image's longer side
};

Shift largestSureShift(const LensRefit& lens, cv::Size imageSize) {
  constexpr std::array<const char*, 4> kNames = {"fx", "fy", "cx", "cy"};
  Shift largest;
  for (int i = 0; i < 4; ++i) {
    const double off = std::abs(lens.found[i] - lens.given[i]);
    const double scale = i < 2 ? lens.found[i] : std::max(imageSize.width, imageSize.height);
    if (off < kSureDeviations * lens.deviations[i] || off / scale <= largest.part) continue;
    largest = {kNames[static_cast<std::size_t>(i)], lens.given[i], lens.found[i], off / scale};
  }
  return largest;
}

void checkRefit(const StitchRecord& run, const CameraRecord& camera, Findings& findings) {
  const auto lens = refitLens(run, camera);
  if (!lens) return;
  const Shift shift = largestSureShift(*lens, camera.imageSize);
  const bool isMuchBetter =
      lens->givenError > kSmallError && lens->givenError > kTimesBetter * lens->foundError;
  if (shift.part < kShift && !isMuchBetter) return;
  const bool isConfirmed = lens->givenError > kTimesLower * lens->foundError;
  const bool isProblem = isMuchBetter || isConfirmed || shift.part >= kLargeShift;
  Finding finding;
  finding.weight = isProblem ? Weight::kProblem : Weight::kCaution;
  finding.text =
      "camera " + inQuotes(camera.id) + ": " + intrinsicsOf(camera) + " does not fit its images: ";
  if (shift.part >= kShift)
    finding.text += std::string(shift.name) + " is " + roughNumberText(shift.given) +
                    " there, and about " + roughNumberText(shift.found) + " by its board images; ";
  finding.text += "the reprojection error is " + pixelText(lens->givenError) +
                  ", with fitting intrinsics " + pixelText(lens->foundError);
  finding.advice = kRecalibrate;
  findings.push_back(finding);
}

void checkError(const StitchRecord& run, const CameraRecord& camera, Findings& findings) {
  const double error = medianReprojectionError(camera);
  std::vector<double> others;
  for (const CameraRecord& other : run.cameras)
    if (&other != &camera && medianReprojectionError(other) > 0)
      others.push_back(medianReprojectionError(other));
  const double usual = median(others);
  const bool isFarOff = usual > 0 && error > kTimesTheOthers * usual && error > kSmallError;
  if (!isFarOff && error <= kLargeError) return;
  findings.push_back({error > kLargeError ? Weight::kProblem : Weight::kCaution,
                      "camera " + inQuotes(camera.id) + ": its reprojection error is " +
                          pixelText(error) +
                          (usual > 0 ? ", the other cameras' " + pixelText(usual) : std::string()),
                      "its intrinsics may be wrong, or its images blurred: " + kRecalibrate});
}

void checkImages(const CameraRecord& camera, Findings& findings) {
  const double usual = medianReprojectionError(camera);
  for (const ShotRecord& shot : camera.shots) {
    if (!shot.found() || shot.reprojectionError <= kBadImage ||
        shot.reprojectionError <= kTimesTheCameras * usual)
      continue;
    findings.push_back(
        {Weight::kCaution,
         "camera " + inQuotes(camera.id) + ": " + fileName(shot.image) +
             " has a reprojection error of " + pixelText(shot.reprojectionError) +
             ", the camera's other images " + pixelText(usual),
         "look at this image; leave it out when it is blurred or the board is bent or hidden"});
  }
}

} // namespace

double medianReprojectionError(const CameraRecord& camera) {
  std::vector<double> errors;
  for (const ShotRecord& shot : camera.shots)
    if (shot.found()) errors.push_back(shot.reprojectionError);
  return median(errors);
}

Findings checkLenses(const StitchRecord& run) {
  Findings findings;
  for (const CameraRecord& camera : run.cameras) {
    const std::size_t before = findings.size();
    checkSize(camera, findings);
    if (findings.size() == before) checkRefit(run, camera, findings);
    if (findings.size() == before) checkError(run, camera, findings);
    checkImages(camera, findings);
  }
  return findings;
}

} // namespace velmorn::tool
