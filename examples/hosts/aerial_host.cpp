// A host that shows from above what two depth cameras see.
//
//   aerial_host PICTURE.ppm
//
// The depth images are made here: a floor 1000 mm below two cameras 400 mm apart, and a box between
// them. Exit status 0, 1 when the library refuses or the picture cannot be written, 2 for a wrong
// command line.
#include <velmorn64.h>

#include <cmath>
#include <cstdio>
#include <memory>

namespace {

constexpr int kWidth = 320, kHeight = 240;                      // pixels
constexpr double kFocal = 280;                                  // pixels
constexpr double kFloor = 1000, kBoxTop = 850, kBaseline = 400; // millimetres
constexpr float kResolution = 4;                                // millimetres per cell
constexpr tagOzKRect2Df32 kRegion = {-500, -400, 900, 400};     // in the first camera's frame

bool isOnBox(double x, double y) { return x > 120 && x < 280 && std::abs(y) < 80; }

// What a camera at (cameraX, 0, 0), looking along z, measures.
std::vector<unsigned short> depthFrom(double cameraX) {
  std::vector<unsigned short> depth;
  for (int v = 0; v < kHeight; ++v)
    for (int u = 0; u < kWidth; ++u) {
      const double x = (u - kWidth / 2.0) / kFocal, y = (v - kHeight / 2.0) / kFocal;
      const bool box = isOnBox(cameraX + x * kBoxTop, y * kBoxTop);
      depth.push_back(static_cast<unsigned short>(box ? kBoxTop : kFloor));
    }
  return depth;
}

tagOzKImage depthImage(std::vector<unsigned short>& depth) {
  tagOzKImage image{};
  image.type = kOzkImageOneChannel;
  image.dataType = kOzkSample16U;
  image.width = kWidth;
  image.height = kHeight;
  image.data = depth.data();
  return image;
}

// PPM holds red, green, blue; the false colours' third channel is the near one.
bool writePicture(const tagOzKImage& image, const char* path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "wb"), std::fclose);
  if (!file) return false;
  std::fprintf(file.get(), "P6\n%u %u\n255\n", image.width, image.height);
  const auto* samples = static_cast<const unsigned char*>(image.data);
  const std::size_t pixels = std::size_t{image.width} * image.height;
  for (std::size_t i = 0; i < pixels; ++i)
    for (const std::size_t channel : {2U, 1U, 0U}) std::fputc(samples[3 * i + channel], file.get());
  return std::fflush(file.get()) == 0;
}

int run(const char* path) {
  std::vector<unsigned short> left = depthFrom(0), right = depthFrom(kBaseline);
  const tagOzKImage depths[] = {depthImage(left), depthImage(right)};
  const tagOzKCamIntrinsic camera = {{kFocal, 0, kWidth / 2.0, 0, kFocal, kHeight / 2.0, 0, 0, 1}};
  const tagOzKCamIntrinsic intrinsics[] = {camera, camera};
  const tagOzKCamExtrinsic firstFromCam[] = {
      {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
      {{1, 0, 0, kBaseline, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};

  tagOzKImage aerial{};
  int status = createAerialViewImg(&kRegion, kResolution, &aerial);
  if (status == kOzkSuccess)
    status = ozkCvtDepthToAerialViewImg(depths, nullptr, intrinsics, firstFromCam, 2, &kRegion,
                                        kResolution, &aerial);
  const bool isWritten = status == kOzkSuccess && writePicture(aerial, path);
  if (isWritten) std::printf("%s: %u x %u cells\n", path, aerial.width, aerial.height);
  releaseAerialViewImg(&aerial);
  if (!isWritten) std::fprintf(stderr, "no picture (status %d)\n", status);
  return isWritten ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: aerial_host PICTURE.ppm\n");
    return 2;
  }
  return run(argv[1]);
}
