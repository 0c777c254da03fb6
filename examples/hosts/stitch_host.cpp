// A host that calibrates two cameras to each other from images of one chessboard.
//
//   stitch_host FOLDER
//
// FOLDER holds left01.jpg to left06.jpg and right01.jpg to right06.jpg, image j of both showing the
// same board position; Debian's opencv-doc has such a pair. Prints rightFromLeft. Exit status 0, 1
// when the library refuses, 2 for a wrong command line.
#include <velmorn64.h>

#include <cstdio>

namespace {

constexpr tagOzKSize kInnerCorners = {9, 6};
constexpr float kSquare = 25; // millimetres: the unit of the result
constexpr int kMinImages = 3; // board positions that link two cameras
constexpr int kImages = 6;
constexpr int kBase = 0; // left

std::vector<std::string> imagesOf(const std::string& folder, const std::string& side) {
  std::vector<std::string> images;
  for (int i = 1; i <= kImages; ++i)
    images.push_back(folder + "/" + side + "0" + std::to_string(i) + ".jpg");
  return images;
}

// The entry of a camera that is linked to the base directly is camFromBase.
void printTransform(const tagOzKCamExtrinsic& camFromBase) {
  for (int row = 0; row < 3; ++row) {
    const double* r = camFromBase.data + 4 * row;
    std::printf("%10.6f %10.6f %10.6f %12.4f\n", r[0], r[1], r[2], r[3]);
  }
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: stitch_host FOLDER\n");
    return 2;
  }
  // What the cameras' own calibration says; the host knows it or has it from `velmorn intrinsics`.
  std::map<std::string, tagOzKCamIntrinsic> intrinsics = {
      {"left", {{536.1, 0, 342.4, 0, 536.0, 235.5, 0, 0, 1}}},
      {"right", {{542.3, 0, 328.1, 0, 541.6, 247.0, 0, 0, 1}}}};
  std::map<std::string, tagOzKCamDistortion> distortions = {
      {"left", {{-0.2651, -0.0466, 0.0018, -0.0003, 0.2523}}},
      {"right", {{-0.2830, 0.1115, -0.0005, 0.0011, -0.0320}}}};
  std::map<std::string, std::vector<std::string>> images = {{"left", imagesOf(argv[1], "left")},
                                                            {"right", imagesOf(argv[1], "right")}};
  OzKStitchResult result{};
  const int status = ozkVelmornByChess({"left", "right"}, images, intrinsics, distortions,
                                       kInnerCorners, kSquare, result, kMinImages,
                                       /*saveCornerImages=*/false, kBase);
  if (status != kOzkSuccess) {
    std::fprintf(stderr, "stitching failed with status %d; velmorn.log says more\n", status);
    return 1;
  }
  std::printf("\nrightFromLeft, millimetres:\n");
  printTransform(result.camExtrinsic[1]);
  std::printf("residual %.3f mm\n", static_cast<double>(result.camRTError[1]));
  return 0;
}
