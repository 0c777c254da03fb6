// A host that finds the table in a depth camera's point cloud and measures a point's height over
// it.
//
// The cloud is made here: a table 800 mm away, tilted by 10 degrees, a box on it and noise. Exit
// status 0, 1 when the library refuses or the answer is wrong.
#include <velmorn64.h>

#include <cmath>
#include <cstdio>
#include <random>

namespace {

constexpr float kThreshold = 3; // millimetres from the plane
constexpr double kTilt = 10 * 3.14159265358979 / 180;
constexpr double kBoxHeight = 60; // millimetres

// A point of the table's own frame, z up and towards the camera, in camera coordinates.
tagOzKPoint3Df32 inCamera(double x, double y, double z) {
  return {static_cast<float>(x), static_cast<float>(y * std::cos(kTilt) - z * std::sin(kTilt)),
          static_cast<float>(800 - y * std::sin(kTilt) - z * std::cos(kTilt))};
}

std::vector<tagOzKPoint3Df32> tableWithBox() {
  std::mt19937 generator(1);
  std::normal_distribution<double> noise(0, 0.5);
  std::vector<tagOzKPoint3Df32> points;
  for (int x = -300; x <= 300; x += 4)
    for (int y = -200; y <= 200; y += 4) {
      const bool onBox = std::abs(x) < 80 && std::abs(y) < 60;
      points.push_back(inCamera(x, y, (onBox ? kBoxHeight : 0) + noise(generator)));
    }
  return points;
}

// z in the plane's frame: the height over the table.
double heightOf(const tagOzKPoint3Df32& p, const tagOzKCamExtrinsic& planeFromCam) {
  const double* row = planeFromCam.data + 8;
  return row[0] * static_cast<double>(p.x) + row[1] * static_cast<double>(p.y) +
         row[2] * static_cast<double>(p.z) + row[3];
}

} // namespace

int main() {
  std::vector<tagOzKPoint3Df32> points = tableWithBox();
  tagOzKCamExtrinsic planeFromCam{};
  float meanDistance = 0;
  const int status = ozkCalRefPlaneExtrinsic(points.data(), static_cast<int>(points.size()),
                                             kThreshold, &planeFromCam, &meanDistance);
  if (status != kOzkSuccess) {
    std::fprintf(stderr, "plane fit failed with status %d\n", status);
    return 1;
  }
  const double height = heightOf(inCamera(0, 0, kBoxHeight), planeFromCam);
  std::printf("normal %.4f %.4f %.4f, box %.2f mm high\n", planeFromCam.data[8],
              planeFromCam.data[9], planeFromCam.data[10], height);
  return std::abs(height - kBoxHeight) < 1 ? 0 : 1;
}
